// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Regex/Match.h>
#include <Regex/MatchingFlags.h>
#include <Regex/RegexEngine.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Regex {

enum class Case { exact, ignored };

// A regular expression in ICU's syntax. "^" and "$" stand for the ends of the whole text, and "$" also for the place
// before a line break that ends it.
//
// A value: copies share the compiled expression. All functions are safe on any thread at any time.
//
// Texts are UTF-8; what is no UTF-8 in them is seen as U+FFFD. A search that would take unreasonably long or deep
// gives up, and what it did not find counts as not there; no pattern of ours comes near.
class Pattern {
public:
    // What enumerateMatches() does after a match.
    enum class Next { goOn, stop };
    using Visitor = std::function<Next(const Match&, MatchingFlags)>;

    // Throws RegexError.
    explicit Pattern(std::string source);

    const std::string& pattern() const { return source_; }

    // Whether case is in force ignored, not whether that was asked for: see regex().
    bool caseInsensitive() const { return case_ == Case::ignored; }
    const RegexEngine& engine() const { return engine_; }

    std::optional<Match> firstMatch(std::string_view text) const;
    std::vector<Match> matches(std::string_view text) const; // those that do not overlap, in order
    bool contains(std::string_view text) const;

    // A match at the start of the text, and one that also ends at its end or before the line break that ends it. Each
    // call compiles an anchored expression, which costs more than most searches.
    std::optional<Match> wholeMatch(std::string_view text) const;
    std::optional<Match> prefixMatch(std::string_view text) const;

    std::optional<UTF16Match> firstUTF16Match(std::string_view text) const;
    std::vector<UTF16Match> utf16Matches(std::string_view text) const;

    // Shows the matches to the visitor, one after the other. Returns `completed`, or `internalError` if the search gave
    // up, or nothing if the visitor ended it.
    MatchingFlags enumerateMatches(std::string_view text, const Visitor& visit) const;

private:
    friend Pattern regex(std::string source, Case letters);

    std::optional<Match> anchoredMatch(const std::string& source, std::string_view text) const;

    std::string source_;
    Case case_ = Case::exact;
    RegexEngine engine_;
};

// A pattern that is written in the program: one that does not compile ends the process.
Pattern rx(std::string source, Case letters = Case::exact);

// A pattern that comes from elsewhere. Throws RegexError. If the pattern compiles but cannot ignore case, the result
// does not, and says so in caseInsensitive().
Pattern regex(std::string source, Case letters = Case::exact);

} // namespace Regex
