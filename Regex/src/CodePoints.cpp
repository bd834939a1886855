// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CodePoints.h"

#include "UTF16Text.h"

#include <unicode/utf8.h>

namespace Regex {

std::vector<CodePoint> codePoints(std::string_view text)
{
    const int32_t length = icuLength(text);
    std::vector<CodePoint> all;
    all.reserve(text.size());
    for (int32_t next = 0; next < length;) {
        const int32_t start = next;
        UChar32 value = 0;
        U8_NEXT_OR_FFFD(text.data(), next, length, value);
        all.push_back({ static_cast<char32_t>(value), { static_cast<size_t>(start), static_cast<size_t>(next) } });
    }
    return all;
}

} // namespace Regex
