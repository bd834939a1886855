// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LinkGrammarParser.h"

#include <Regex/Letters.h>
#include <Regex/Words.h>
#include <Sorvane/LinkGrammarTagger.h>

#include <algorithm>
#include <array>
#include <string>

namespace Sorvane {

namespace {

// An imperative shows in the first words; more of them cost time and teach nothing. Interjections do not count.
constexpr size_t mostWords = 6;

// What people say before they begin. The dictionary has few of these, and some of them as other words.
bool isInterjection(std::string_view word)
{
    constexpr std::array<std::string_view, 30> interjections { "ah", "aha", "eh", "er", "erm", "ha", "hello", "hey",
        "hi", "hm", "hmm", "mhm", "mm", "oh", "ok", "okay", "ooh", "oops", "ouch", "phew", "ugh", "uh", "um", "whoa",
        "wow", "yeah", "yep", "yes", "yikes", "yo" };
    return std::ranges::find(interjections, Regex::lowercased(word)) != interjections.end();
}

// The sentence's words up to the last that is looked at.
std::vector<Regex::Word> firstWords(std::string_view sentence)
{
    auto words = Regex::words(sentence, "en");
    size_t counted = 0;
    const auto isBeyond = [&](const Regex::Word& word) { return !isInterjection(word.text) && ++counted > mostWords; };
    words.erase(std::ranges::find_if(words, isBeyond), words.end());
    return words;
}

// The subscript tells: "buy.v", "bought.v-d", "frobnicate[?].v". Auxiliaries with "not" have none.
LexicalClass classOf(const std::string& readWord)
{
    const size_t dot = readWord.rfind('.');
    if (dot == std::string::npos)
        return readWord.ends_with("n't") || readWord.ends_with("n\u2019t") ? LexicalClass::verb : LexicalClass::other;
    constexpr std::string_view verbs = "vwq"; // plain, of wishing, of saying
    const std::string subscript = readWord.substr(dot + 1);
    if (subscript.find_first_of(verbs) == 0)
        return LexicalClass::verb;
    return subscript == "ij" ? LexicalClass::interjection : LexicalClass::other;
}

LexicalClass classIn(const Reading& reading, size_t start)
{
    const auto word = reading.find(start);
    return word == reading.end() ? LexicalClass::other : classOf(word->second);
}

} // namespace

LinkGrammarTagger::LinkGrammarTagger()
    : parser_(std::make_unique<LinkGrammarParser>())
{
}

LinkGrammarTagger::~LinkGrammarTagger() = default;

std::vector<LexicalClass> LinkGrammarTagger::classesOfWords(std::string_view sentence) const
{
    const auto words = firstWords(sentence);
    std::string parsed; // the words alone, without the interjections
    std::vector<size_t> starts;
    for (const auto& word : words) {
        starts.push_back(parsed.size());
        if (!isInterjection(word.text))
            parsed.append(word.text).append(" ");
    }
    const Reading reading = parser_->bestReading(parsed);
    std::vector<LexicalClass> classes;
    for (size_t i = 0; i < words.size(); ++i)
        classes.push_back(isInterjection(words[i].text) ? LexicalClass::interjection : classIn(reading, starts[i]));
    return classes;
}

} // namespace Sorvane
