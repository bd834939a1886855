// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CompiledExpression.h"
#include "UTF16Text.h"

#include <PlatformSupport/Precondition.h>
#include <Regex/Pattern.h>
#include <Regex/RegexError.h>

#include <utility>

namespace Regex {

UTF16Match Match::utf16Offsets(std::string_view text) const
{
    const UTF16Text searched(text);
    UTF16Match match;
    for (const auto& capture : captures) {
        match.captures.push_back({ std::nullopt, capture.substring });
        if (capture.range)
            match.captures.back().range = searched.utf16Range(*capture.range);
    }
    return match;
}

Pattern::Pattern(std::string source)
    : source_(std::move(source))
    , engine_ { std::make_shared<const CompiledExpression>(source_, Case::exact) }
{
}

std::optional<Match> Pattern::firstMatch(std::string_view text) const
{
    const UTF16Text searched(text);
    Search search(*engine_.regex, searched);
    return search.next() ? std::optional(search.match()) : std::nullopt;
}

std::vector<Match> Pattern::matches(std::string_view text) const
{
    std::vector<Match> all;
    enumerateMatches(text, [&](const Match& match, MatchingFlags) {
        all.push_back(match);
        return Next::goOn;
    });
    return all;
}

bool Pattern::contains(std::string_view text) const
{
    return firstMatch(text).has_value();
}

std::optional<Match> Pattern::wholeMatch(std::string_view text) const
{
    return anchoredMatch("^(?:" + source_ + ")$", text);
}

std::optional<Match> Pattern::prefixMatch(std::string_view text) const
{
    return anchoredMatch("^(?:" + source_ + ")", text);
}

std::optional<Match> Pattern::anchoredMatch(const std::string& source, std::string_view text) const
{
    try {
        return regex(source, case_).firstMatch(text);
    } catch (const RegexError&) { // a comment, or a quotation, that swallows the bracket
        return std::nullopt;
    }
}

std::optional<UTF16Match> Pattern::firstUTF16Match(std::string_view text) const
{
    const UTF16Text searched(text);
    Search search(*engine_.regex, searched);
    return search.next() ? std::optional(search.utf16Match()) : std::nullopt;
}

std::vector<UTF16Match> Pattern::utf16Matches(std::string_view text) const
{
    const UTF16Text searched(text);
    Search search(*engine_.regex, searched);
    std::vector<UTF16Match> all;
    while (search.next())
        all.push_back(search.utf16Match());
    return all;
}

MatchingFlags Pattern::enumerateMatches(std::string_view text, const Visitor& visit) const
{
    const UTF16Text searched(text);
    Search search(*engine_.regex, searched);
    while (search.next())
        if (visit(search.match(), search.matchFlags()) == Next::stop)
            return {};
    return search.endFlags();
}

Pattern regex(std::string source, Case letters)
{
    Pattern pattern(std::move(source));
    if (letters == Case::exact)
        return pattern;
    try {
        pattern.engine_.regex = std::make_shared<const CompiledExpression>(pattern.source_, letters);
        pattern.case_ = letters;
    } catch (const RegexError&) { // stays as it is: see the header
    }
    return pattern;
}

Pattern rx(std::string source, Case letters)
{
    try {
        return regex(std::move(source), letters);
    } catch (const RegexError& error) {
        PlatformSupport::fatalError("Regex/Regex: " + error.description());
    }
}

} // namespace Regex
