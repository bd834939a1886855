// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ContentWords.h"
#include "NumberedLines.h"
#include "SpokenNumbers.h"

#include <Regex/Letters.h>
#include <Regex/Pattern.h>
#include <Regex/Trimming.h>
#include <Sorvane/DictationFormatting.h>

#include <algorithm>

namespace Sorvane::DictationFormatting {

namespace {

using Items = std::vector<std::string>;

// What stands behind the bullet or the number, in each line that begins with one.
std::vector<std::string_view> listLines(std::string_view text)
{
    static const Regex::Pattern mark = Regex::rx("^\\s*(?:[-*•]|\\d+[.)])\\s+");
    std::vector<std::string_view> behindMarks;
    for (const auto line : Regex::lines(text)) {
        if (Regex::trimmedOf(line, " \t").empty())
            continue;
        if (const auto match = mark.firstMatch(line))
            behindMarks.push_back(line.substr(match->range().end));
    }
    return behindMarks;
}

// The lines, but the original's item where a line still has the spoken number in it.
Items withoutSpokenNumbers(const std::vector<std::string_view>& lines, const Items& originals)
{
    Items items;
    for (size_t i = 0; i < lines.size(); ++i)
        items.push_back(beginsWithNumber(lines[i], i) ? originals[i] : std::string(lines[i]));
    return items;
}

ContentWords contentWords(std::string_view text)
{
    static const ContentWords ignored { "a", "an", "the", "and", "or", "to", "of", "at", "in", "on", "for", "um",
        "uh" };
    const std::string lowercased = Regex::lowercased(text);
    ContentWords words;
    for (const auto run : Regex::runsOfLetters(lowercased))
        words.emplace(run);
    std::erase_if(words, [](const std::string& word) { return ignored.contains(word); });
    return words;
}

// Whether these are the same items, each with a word in common with the one that was spoken.
bool matchItems(const Items& items, const Items& originals)
{
    return std::ranges::equal(items, originals, [](const std::string& item, const std::string& original) {
        return haveCommonWord(contentWords(item), contentWords(original));
    });
}

// The list where the cleaned text still speaks its numbers.
std::optional<Items> enumeratedItems(std::string_view cleaned, const Enumeration& original, const LexicalTagger& tagger)
{
    const auto found = enumeration(cleaned, tagger);
    if (!found || !Regex::equalIgnoringCase(found->intro, original.intro) || !matchItems(found->items, original.items))
        return std::nullopt;
    return found->items;
}

// With a line break for what stands between the items of a sentence. A run of blanks is tried from its start only
// (?<!), or a long one would take for ever.
std::string withLineBreaksBetweenItems(std::string_view text)
{
    static const Regex::Pattern separator = Regex::rx(",\\s*(?:and\\s+)?|;\\s*|(?<!\\s)\\s+and\\s+");
    std::string separated;
    size_t from = 0;
    for (const auto& match : separator.matches(text)) {
        separated += std::string(text.substr(from, match.range().start - from)) + '\n';
        from = match.range().end;
    }
    return separated.append(text.substr(from));
}

// The list where the model joined it into a sentence: "I need to buy milk, call mom, and write the report."
std::optional<Items> proseItems(std::string_view cleaned, const Enumeration& original)
{
    if (original.intro.empty())
        return std::nullopt;
    const auto introLength = Regex::prefixLengthIgnoringCase(cleaned, original.intro);
    if (!introLength)
        return std::nullopt;
    const auto rest = Regex::trimmedOf(cleaned.substr(*introLength), " :\n");
    const std::string separated = withLineBreaksBetweenItems(rest);
    const auto pieces = Regex::lines(separated);
    if (pieces.size() != original.items.size())
        return std::nullopt;
    Items items;
    for (const auto piece : pieces)
        items.push_back(Regex::firstUppercased(Regex::trimmedOf(piece, " .\n")));
    return matchItems(items, original.items) ? std::optional(items) : std::nullopt;
}

} // namespace

std::string Enumeration::render(const std::vector<std::string>& lines) const
{
    return (intro.empty() ? "" : intro + ":\n") + numberedLines(lines);
}

std::string Enumeration::restoringLayout(std::string_view cleaned, const LexicalTagger& tagger) const
{
    const auto lines = listLines(cleaned);
    if (lines.size() == items.size())
        return render(withoutSpokenNumbers(lines, items));
    if (const auto found = enumeratedItems(cleaned, *this, tagger))
        return render(*found);
    return render(proseItems(cleaned, *this).value_or(items));
}

} // namespace Sorvane::DictationFormatting
