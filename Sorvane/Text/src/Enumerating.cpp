// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "SpokenNumbers.h"

#include <Regex/Letters.h>
#include <Regex/Pattern.h>
#include <Regex/Trimming.h>
#include <Sorvane/DictationFormatting.h>

#include <algorithm>

namespace Sorvane::DictationFormatting {

namespace {

constexpr size_t fewestItems = 2;
constexpr size_t fewestItemsOfPlainNumbers = 3;

// The markers of a list, and how its first came about.
struct Markers {
    std::vector<Marker> all;
    bool firstIsImplied = false;
};

// Where the first item begins in "I need to buy milk, two call mom": behind the "to".
std::optional<size_t> impliedStart(std::string_view text)
{
    static const Regex::Pattern pattern = Regex::rx("(?i)^.*?\\b(?:need|want|plan|have|going|like)\\s+to\\s+");
    const auto match = pattern.firstMatch(text);
    return match ? std::optional(match->range().end) : std::nullopt;
}

// From the spoken one onward, or from the spoken two with an implied one before it.
std::optional<Markers> listMarkers(std::string_view text)
{
    auto markers = spokenNumbers(text);
    const auto one = std::ranges::find(markers, 1, &Marker::number);
    if (one != markers.end())
        return Markers { { one, markers.end() } };
    const auto two = std::ranges::find(markers, 2, &Marker::number);
    if (two == markers.end())
        return std::nullopt;
    const auto start = impliedStart(text);
    if (!start || *start >= two->start)
        return std::nullopt;
    markers.erase(markers.begin(), two);
    markers.insert(markers.begin(), { 1, *start, *start, false });
    return Markers { markers, true };
}

bool areNumberedFromOne(const std::vector<Marker>& markers)
{
    int expected = 0;
    return std::ranges::all_of(markers, [&](const Marker& marker) { return marker.number == ++expected; });
}

std::optional<std::vector<std::string>> itemsBehind(const std::vector<Marker>& markers, std::string_view text)
{
    std::vector<std::string> items;
    for (size_t i = 0; i < markers.size(); ++i) {
        const size_t end = i + 1 < markers.size() ? markers[i + 1].start : text.size();
        const size_t start = markers[i].contentStart;
        const auto item = Regex::trimmedOf(text.substr(start, end - start), " \n\t,;.");
        if (item.empty())
            return std::nullopt;
        items.push_back(Regex::firstUppercased(item));
    }
    return items;
}

// Whether an item reads as an imperative: behind a "please", which puts a bare verb in its place.
bool beginsWithAction(std::string_view item, const LexicalTagger& tagger)
{
    if (Regex::piecesBetweenBlanks(item).size() < 2)
        return false;
    const auto classes = tagger.classesOfWords("Please " + Regex::firstLowercased(item));
    const auto settling = std::ranges::find_if(classes.begin() + (classes.empty() ? 0 : 1), classes.end(),
        [](LexicalClass lexicalClass) { return lexicalClass != LexicalClass::interjection; });
    return settling != classes.end() && *settling == LexicalClass::verb;
}

bool areActions(const std::vector<std::string>& items, const LexicalTagger& tagger)
{
    return items.size() >= fewestItemsOfPlainNumbers
        && std::ranges::all_of(items, [&](const std::string& item) { return beginsWithAction(item, tagger); });
}

// Whether these numbers were meant as a list: said so number by number, or announced.
bool isMeantAsList(const std::vector<Marker>& markers, std::string_view intro)
{
    static const Regex::Pattern cue = Regex::rx("(?i)(?:\\blist\\b|\\bfollowing\\b|\\bsteps\\b|\\btasks\\b|\\bthings\\b"
                                                "|\\bstore for$|\\b(?:need|want|plan|have|going|like) to$)");
    if (std::ranges::all_of(markers, &Marker::isExplicit))
        return true;
    return markers.size() >= fewestItemsOfPlainNumbers && cue.contains(intro);
}

} // namespace

std::optional<Enumeration> enumeration(std::string_view text, const LexicalTagger& tagger)
{
    if (needsVerbatim(text))
        return std::nullopt;
    const auto markers = listMarkers(text);
    if (!markers || markers->all.size() < fewestItems || !areNumberedFromOne(markers->all))
        return std::nullopt;
    const auto intro = Regex::trimmedOf(text.substr(0, markers->all.front().start), " \n\t,:;.");
    if (!isMeantAsList(markers->all, intro))
        return std::nullopt;
    auto items = itemsBehind(markers->all, text);
    if (!items || (markers->firstIsImplied && !areActions(*items, tagger)))
        return std::nullopt;
    return Enumeration { std::string(intro), *std::move(items) };
}

} // namespace Sorvane::DictationFormatting
