// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Text/Lexer.h"

#include <MLProgram/MLModelError.h>

#include <string_view>

namespace MLProgram {

// Throws MLModelError with the place in the program text in front of the fault, as in
// "model.mil, line 12, column 40: a type is expected, not "sin"".
[[noreturn]] void failAt(const Token& token, std::string_view fault);
[[noreturn]] void failAt(const Token& token, MLModelError::Case which, std::string_view fault);

} // namespace MLProgram
