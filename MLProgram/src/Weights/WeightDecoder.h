// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Program.h"

#include <functional>
#include <string_view>
#include <vector>

namespace MLProgram {

// True for the operations that decode compressed weights (constexpr_...).
bool isWeightDecoder(std::string_view operation) noexcept;

// Runs such an operation: one constant for each output, dense and of the declared type (16-bit weights stay
// 16-bit). `constantOf` gives the operands, which may be outputs of earlier decoders.
//
// Errors: MLModelError (invalidProgram) when the operands do not fit; (outOfMemory).
std::vector<Constant> decodeWeights(
    const Function& function, const Operation& operation, const std::function<const Constant&(ValueIndex)>& constantOf);

} // namespace MLProgram
