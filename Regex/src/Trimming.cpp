// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CodePoints.h"

#include <Regex/Letters.h>
#include <Regex/Trimming.h>

#include <unicode/uchar.h>

#include <algorithm>

namespace Regex {

namespace {

bool isNewline(char32_t codePoint)
{
    return (codePoint >= U'\n' && codePoint <= U'\r') || codePoint == U'\u0085' || codePoint == U'\u2028'
        || codePoint == U'\u2029';
}

bool isBlank(char32_t codePoint)
{
    return u_isUWhiteSpace(static_cast<UChar32>(codePoint)) != 0;
}

// The pieces between the separators, empty ones too.
template <typename IsSeparator> std::vector<std::string_view> split(std::string_view text, IsSeparator isSeparator)
{
    std::vector<std::string_view> pieces;
    size_t start = 0;
    for (const auto& [codePoint, range] : codePoints(text)) {
        if (!isSeparator(codePoint))
            continue;
        pieces.push_back(text.substr(start, range.start - start));
        start = range.end;
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

std::vector<std::string_view> withoutEmptyOnes(std::vector<std::string_view> pieces)
{
    std::erase_if(pieces, [](std::string_view piece) { return piece.empty(); });
    return pieces;
}

} // namespace

std::string_view trimmed(std::string_view text)
{
    return trimmedOfBlanksAnd(text, {});
}

std::string_view trimmedOf(std::string_view text, std::string_view characters)
{
    const size_t first = text.find_first_not_of(characters);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(characters) + 1 - first);
}

std::string_view trimmedOfBlanksAnd(std::string_view text, std::string_view characters)
{
    const auto isKept = [&](const CodePoint& codePoint) {
        return !isBlank(codePoint.value) && std::ranges::find(characters, codePoint.value) == characters.end();
    };
    const auto all = codePoints(text);
    const auto first = std::ranges::find_if(all, isKept);
    if (first == all.end())
        return {};
    const auto last = std::find_if(all.rbegin(), all.rend(), isKept);
    return text.substr(first->range.start, last->range.end - first->range.start);
}

std::vector<std::string_view> lines(std::string_view text)
{
    return split(text, isNewline);
}

std::vector<std::string_view> piecesBetweenBlanks(std::string_view text)
{
    return withoutEmptyOnes(split(text, isBlank));
}

std::vector<std::string_view> runsOfLetters(std::string_view text)
{
    return withoutEmptyOnes(split(text, [](char32_t codePoint) { return !isLetter(codePoint); }));
}

} // namespace Regex
