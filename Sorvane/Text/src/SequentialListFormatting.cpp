// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ContentWords.h"
#include "NumberedLines.h"

#include <Regex/Letters.h>
#include <Regex/Trimming.h>
#include <Regex/Words.h>
#include <Sorvane/SequentialListFormatting.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace Sorvane::SequentialListFormatting {

namespace {

constexpr size_t fewestSeparators = 2;
constexpr size_t fewestWordsOfAStep = 2;

struct Word {
    std::string value; // in lower case
    Regex::ByteRange range;
};

std::vector<Word> words(std::string_view text)
{
    std::vector<Word> all;
    for (const auto& word : Regex::words(text, "en"))
        all.push_back({ Regex::lowercased(word.text), word.range });
    return all;
}

// A layout of its own, or somebody's exact words.
bool isLaidOutOrQuotes(std::string_view text)
{
    constexpr std::array<std::string_view, 5> signs { "\n", "\"", "\u201C", "\u2018", "`" };
    return std::ranges::any_of(signs, [&](auto sign) { return text.find(sign) != std::string_view::npos; });
}

bool isCondition(const Word& word)
{
    return word.value == "if" || word.value == "unless";
}

// "Back then", "until then": a time, and no next step.
bool makesThenATime(const Word& word)
{
    constexpr std::array<std::string_view, 6> adverbs { "back", "since", "until", "by", "before", "even" };
    return std::ranges::find(adverbs, word.value) != adverbs.end();
}

bool startsWithFirst(const std::vector<Word>& all)
{
    return all.front().value == "first";
}

bool separatesSteps(size_t then, const std::vector<Word>& all)
{
    if (then == 0 || then + 1 == all.size() || makesThenATime(all[then - 1]))
        return false;
    return startsWithFirst(all) || all[then - 1].value == "and";
}

// The places of "then" among the words, if they are those of a sequence.
std::optional<std::vector<size_t>> separators(const std::vector<Word>& all)
{
    std::vector<size_t> thens;
    for (size_t i = 0; i < all.size(); ++i)
        if (all[i].value == "then")
            thens.push_back(i);
    const bool areSeparators = thens.size() >= fewestSeparators
        && std::ranges::all_of(thens, [&](size_t then) { return separatesSteps(then, all); });
    return areSeparators && std::ranges::none_of(all, isCondition) ? std::optional(thens) : std::nullopt;
}

// Behind an opening "First," with a comma; a "first" without one belongs to the step.
size_t startOfSteps(std::string_view text, const std::vector<Word>& all)
{
    if (!startsWithFirst(all) || all.size() < 2)
        return 0;
    const size_t end = all[0].range.end;
    const auto gap = text.substr(end, all[1].range.start - end);
    return gap.find(',') == std::string_view::npos ? 0 : end;
}

// Where the step before a "then" ends: the "and" of "and then" is not part of it.
size_t endOfStep(size_t then, const std::vector<Word>& all)
{
    const bool behindAnd = all[then - 1].value == "and";
    return all[behindAnd ? then - 1 : then].range.start;
}

// The pieces of the text that its separators leave.
std::vector<std::string> steps(
    std::string_view text, const std::vector<Word>& all, const std::vector<size_t>& separators)
{
    constexpr std::string_view marks = ",;:.";
    std::vector<std::string> cut;
    size_t start = startOfSteps(text, all);
    for (const size_t then : separators) {
        cut.emplace_back(Regex::trimmedOfBlanksAnd(text.substr(start, endOfStep(then, all) - start), marks));
        start = all[then].range.end;
    }
    cut.emplace_back(Regex::trimmedOfBlanksAnd(text.substr(start), marks));
    return cut;
}

std::optional<std::vector<std::string>> items(std::string_view text)
{
    if (isLaidOutOrQuotes(text))
        return std::nullopt;
    const auto all = words(text);
    const auto thens = separators(all);
    if (!thens)
        return std::nullopt;
    auto cut = steps(text, all, *thens);
    const bool areSteps
        = std::ranges::all_of(cut, [](const auto& step) { return words(step).size() >= fewestWordsOfAStep; });
    return areSteps ? std::optional(std::move(cut)) : std::nullopt;
}

ContentWords contentWords(std::string_view item)
{
    static const ContentWords ignored { "i", "we", "you", "the", "a", "an", "to", "and", "then", "also", "have", "got",
        "gotta", "need", "for", "of", "um", "uh" };
    ContentWords values;
    for (auto& word : words(item))
        if (!ignored.contains(word.value))
            values.insert(std::move(word.value));
    return values;
}

bool shareContent(const std::string& a, const std::string& b)
{
    return haveCommonWord(contentWords(a), contentWords(b));
}

} // namespace

std::string restoringLayout(std::string_view cleaned, std::string_view original)
{
    const auto spoken = items(original);
    auto written = spoken ? items(cleaned) : std::nullopt;
    if (!written || !std::ranges::equal(*written, *spoken, shareContent))
        return std::string(cleaned);
    for (auto& item : *written)
        item = Regex::firstUppercased(item);
    return numberedLines(*written);
}

} // namespace Sorvane::SequentialListFormatting
