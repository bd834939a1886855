// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "UTF16Text.h"

#include <Regex/Match.h>
#include <Regex/MatchingFlags.h>
#include <Regex/Pattern.h>

#include <unicode/regex.h>

#include <memory>
#include <string>

namespace Regex {

// An expression as ICU compiled it. Never changes; safe on any thread.
class CompiledExpression {
public:
    // Throws RegexError.
    CompiledExpression(const std::string& source, Case letters);

    std::unique_ptr<icu::RegexMatcher> matcher(const UTF16Text& text) const;

private:
    std::unique_ptr<const icu::RegexPattern> pattern_;
};

// One walk through a text, from match to match. Expression and text must outlive it.
class Search {
public:
    Search(const CompiledExpression& expression, const UTF16Text& text);

    // Goes on to the next match; false when there is none, or when the search gave up.
    bool next();

    // The match that next() came to.
    Match match() const;
    UTF16Match utf16Match() const;
    MatchingFlags matchFlags() const;

    // How the walk ended: `completed` or `internalError`.
    MatchingFlags endFlags() const;

private:
    std::optional<UTF16Range> groupRange(int32_t group) const;

    const UTF16Text& text_;
    std::unique_ptr<icu::RegexMatcher> matcher_;
    UErrorCode status_ = U_ZERO_ERROR;
};

} // namespace Regex
