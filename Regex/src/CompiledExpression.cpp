// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CompiledExpression.h"

#include <PlatformSupport/Precondition.h>
#include <Regex/RegexError.h>

namespace Regex {

namespace {

// ICU's measure of how long one match is looked for: about 10,000 steps each, a third of a millisecond. The longest
// transcript and a pattern that goes through it once need five.
constexpr int32_t timeLimit = 100;

std::unique_ptr<const icu::RegexPattern> compiled(const std::string& source, Case letters)
{
    UErrorCode status = U_ZERO_ERROR;
    UParseError place {};
    const uint32_t flags = letters == Case::ignored ? UREGEX_CASE_INSENSITIVE : 0;
    std::unique_ptr<const icu::RegexPattern> pattern(icu::RegexPattern::compile(utf16(source), flags, place, status));
    if (U_FAILURE(status))
        throw RegexError("pattern does not compile: " + std::string(u_errorName(status)) + " at line "
            + std::to_string(place.line) + ", offset " + std::to_string(place.offset));
    return pattern;
}

} // namespace

CompiledExpression::CompiledExpression(const std::string& source, Case letters)
    : pattern_(compiled(source, letters))
{
}

std::unique_ptr<icu::RegexMatcher> CompiledExpression::matcher(const UTF16Text& text) const
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(pattern_->matcher(text.units(), status));
    PlatformSupport::precondition(U_SUCCESS(status), "a compiled pattern gives a matcher");
    matcher->setTimeLimit(timeLimit, status);
    return matcher;
}

Search::Search(const CompiledExpression& expression, const UTF16Text& text)
    : text_(text)
    , matcher_(expression.matcher(text))
{
}

bool Search::next()
{
    return matcher_->find(status_) && U_SUCCESS(status_);
}

std::optional<UTF16Range> Search::groupRange(int32_t group) const
{
    UErrorCode status = U_ZERO_ERROR;
    const int32_t start = matcher_->start(group, status);
    const int32_t end = matcher_->end(group, status);
    if (start < 0)
        return std::nullopt;
    return UTF16Range { static_cast<size_t>(start), static_cast<size_t>(end) };
}

Match Search::match() const
{
    Match match;
    for (const auto& capture : utf16Match().captures) {
        match.captures.push_back({ std::nullopt, capture.substring });
        if (capture.range)
            match.captures.back().range = text_.byteRange(*capture.range);
    }
    return match;
}

UTF16Match Search::utf16Match() const
{
    UTF16Match match;
    for (int32_t group = 0; group <= matcher_->groupCount(); ++group) {
        const auto range = groupRange(group);
        match.captures.push_back({ range, std::nullopt });
        if (range)
            match.captures.back().substring = text_.substring(text_.byteRange(*range));
    }
    return match;
}

MatchingFlags Search::matchFlags() const
{
    MatchingFlags flags;
    if (matcher_->hitEnd() != 0)
        flags = flags | MatchingFlags::hitEnd;
    if (matcher_->requireEnd() != 0)
        flags = flags | MatchingFlags::requiredEnd;
    return flags;
}

MatchingFlags Search::endFlags() const
{
    return U_SUCCESS(status_) ? MatchingFlags::completed : MatchingFlags::internalError;
}

} // namespace Regex
