// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Constant.h"
#include "Program/ValueType.h"
#include "Text/TokenStream.h"
#include "Text/WeightSource.h"

#include <optional>
#include <vector>

namespace MLProgram {

// A value of the text, which always stands in its type: `tensor<int32, [2]>([1, 2])`.
struct Literal {
    ValueType type; // without open dimensions where it is a tensor's
    std::optional<Constant> constant {}; // of a tensor
    std::vector<Literal> items {}; // of a list or tuple; of a dictionary key, value, key, value, ...
};

// Reads a type and the value that stands in it. Values of files are taken from `weights`.
Literal readLiteral(TokenStream& stream, WeightSource& weights);

} // namespace MLProgram
