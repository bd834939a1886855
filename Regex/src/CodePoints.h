// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Regex/Match.h>

#include <string_view>
#include <vector>

namespace Regex {

struct CodePoint {
    char32_t value = 0;
    ByteRange range;
};

// The code points of a text; what is no UTF-8 in it is U+FFFD.
std::vector<CodePoint> codePoints(std::string_view text);

} // namespace Regex
