// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Pieces.h"

#include <ModelStore/SemanticVersion.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace ModelStore {

namespace {

std::optional<int64_t> number(std::string_view digits)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    int64_t value = 0;
    if (digits.empty() || !std::ranges::all_of(digits, isDigit)
        || std::from_chars(digits.data(), digits.data() + digits.size(), value).ec != std::errc())
        return {};
    return value;
}

} // namespace

std::optional<SemanticVersion> SemanticVersion::parse(std::string_view tag)
{
    if (tag.starts_with('v'))
        tag.remove_prefix(1);
    std::array<int64_t, 3> numbers {};
    const std::vector<std::string_view> pieces = piecesOf(tag, '.');
    if (pieces.size() > numbers.size())
        return {};
    for (size_t i = 0; i < pieces.size(); ++i) {
        const std::optional<int64_t> value = number(pieces[i]);
        if (!value)
            return {};
        numbers[i] = *value;
    }
    return SemanticVersion { .major = numbers[0], .minor = numbers[1], .patch = numbers[2] };
}

} // namespace ModelStore
