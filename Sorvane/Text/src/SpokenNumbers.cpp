// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "SpokenNumbers.h"

#include "NumberWords.h"

#include <Regex/Letters.h>
#include <Regex/Pattern.h>

#include <algorithm>
#include <string>

namespace Sorvane {

namespace {

std::string joinedNumberWords()
{
    std::string joined;
    for (const auto word : numberWords)
        joined += (joined.empty() ? "" : "|") + std::string(word);
    return joined;
}

// A number after neither a word nor a full stop, so that "3.5" and "v2" hold none, and before a letter.
const Regex::Pattern& numberPattern()
{
    static const Regex::Pattern pattern = Regex::rx("(?i)(?<![\\w.])(?:and\\s+)?(?:number\\s+)?(" + joinedNumberWords()
        + "|[1-9]|10)(?:[.),:]\\s*|\\s+)(?=\\p{L})");
    return pattern;
}

std::optional<int> valueOf(const std::string& number)
{
    if (number.front() >= '0' && number.front() <= '9')
        return std::stoi(number);
    const auto* const word = std::ranges::find(numberWords, number);
    if (word == numberWords.end()) // a letter that only folds to one of the word's
        return std::nullopt;
    return static_cast<int>(word - numberWords.begin()) + 1;
}

bool isExplicit(const std::string& spoken)
{
    static const Regex::Pattern number = Regex::rx("^(?:and\\s+)?number\\s+");
    static const Regex::Pattern digitWithMark = Regex::rx("\\d[.),:]");
    return number.contains(spoken) || digitWithMark.contains(spoken);
}

std::vector<Regex::Pattern> numbersByPlace()
{
    std::vector<Regex::Pattern> patterns;
    for (size_t place = 0; place < numberWords.size(); ++place)
        patterns.push_back(Regex::rx(
            "(?i)^(?:number\\s+)?(?:" + std::string(numberWords[place]) + "|" + std::to_string(place + 1) + ")\\b"));
    return patterns;
}

} // namespace

std::vector<Marker> spokenNumbers(std::string_view text)
{
    std::vector<Marker> markers;
    for (const auto& match : numberPattern().matches(text)) {
        if (const auto number = valueOf(Regex::lowercased(match.captures[1].substring.value())))
            markers.push_back(
                { *number, match.range().start, match.range().end, isExplicit(Regex::lowercased(match.substring())) });
    }
    return markers;
}

bool beginsWithNumber(std::string_view line, size_t place)
{
    static const std::vector<Regex::Pattern> patterns = numbersByPlace();
    return patterns.at(place).contains(line);
}

} // namespace Sorvane
