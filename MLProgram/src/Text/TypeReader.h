// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/ValueType.h"
#include "Text/TokenStream.h"

namespace MLProgram {

// Types and literals nest no deeper than this; the deepest that compilers write have five levels.
constexpr int maximumNesting = 32;

// True when a type begins at the current word, in a place where a name may stand as well: values are called
// `x`, `bool` or `list` like anything else.
bool isAtType(const TokenStream& stream) noexcept;

// Reads a type in either spelling: `tensor<int32, []>` and `int32` are the same.
// Errors: MLModelError (invalidProgram) for anything else and for more than maximumElementCount elements,
// (unsupported) for more than maximumRank dimensions.
ValueType readType(TokenStream& stream);

} // namespace MLProgram
