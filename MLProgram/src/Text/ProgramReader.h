// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Program.h"
#include "Text/WeightSource.h"

#include <string_view>

namespace MLProgram {

// Reads the text of a program (model.mil) in either spelling. The result does not refer to `text`.
//
// Operations are not looked up: a statement with any name is read, with nested blocks or without.
//
// Errors: MLModelError (invalidProgram), or (unsupported) for what a sound text may hold and this runtime
//         cannot represent, with line and column in front; and what `weights` throws, with the place added.
Program readProgram(std::string_view text, WeightSource& weights);

} // namespace MLProgram
