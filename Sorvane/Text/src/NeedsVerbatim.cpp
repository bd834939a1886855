// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Regex/Pattern.h>
#include <Sorvane/DictationFormatting.h>

namespace Sorvane::DictationFormatting {

namespace {

// A right curly quote alone is no sign: it is also an inch, and what is left of a quotation that began earlier.
constexpr std::string_view leftQuote = "\u201C";

bool asksForTheLetter(std::string_view text)
{
    static const Regex::Pattern pattern = Regex::rx("(?i)\\b(literally|verbatim)\\b");
    return pattern.contains(text);
}

// "Define the word um": a word for words, and behind it in the same line one that cleaning would take away. The first
// of a line stands for all others, so it is not given back (?>); that keeps a long line from taking for ever.
bool talksAboutWords(std::string_view text)
{
    static const Regex::Pattern pattern
        = Regex::rx("(?im)^(?>.*?\\b(?:word|label|phrase|term|meaning|explain|define)\\b)"
                    ".*\\b(?:um|uh|comma|question mark|period)\\b");
    return pattern.contains(text);
}

} // namespace

bool needsVerbatim(std::string_view text)
{
    return text.find_first_of("`\"") != std::string_view::npos || text.find(leftQuote) != std::string_view::npos
        || asksForTheLetter(text) || talksAboutWords(text);
}

} // namespace Sorvane::DictationFormatting
