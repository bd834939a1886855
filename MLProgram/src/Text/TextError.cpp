// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/TextError.h"

#include <string>

namespace MLProgram {

void failAt(const Token& token, std::string_view fault)
{
    failAt(token, MLModelError::Case::invalidProgram, fault);
}

void failAt(const Token& token, MLModelError::Case which, std::string_view fault)
{
    throw MLModelError(which,
        "model.mil, line " + std::to_string(token.line) + ", column " + std::to_string(token.column) + ": "
            + std::string(fault));
}

} // namespace MLProgram
