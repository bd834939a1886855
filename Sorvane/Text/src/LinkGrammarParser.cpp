// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LinkGrammarParser.h"

#include "ScopedUTF8Locale.h"

#include <Regex/Trimming.h>

#include <string_view>
#include <utility>

namespace Sorvane {

namespace {

// A short sentence has a handful of readings; of an odd one the cheapest come first.
constexpr int mostReadings = 100;

// Words that fit into no reading, before the sentence counts as unreadable: as many as there are.
constexpr int mostWordsLeftOut = 20;

constexpr int timeLimit = 1; // seconds; link-grammar knows no less, and no short sentence comes near

bool takesPleaseAsAction(Linkage linkage)
{
    constexpr WordIdx first = 1; // behind the sentence's wall
    return linkage_get_num_words(linkage) > first
        && std::string_view(linkage_get_word(linkage, first)).starts_with("please.v");
}

Reading wordsOf(Linkage linkage)
{
    Reading words;
    for (WordIdx i = 1; i < linkage_get_num_words(linkage); ++i)
        words.emplace(linkage_get_word_byte_start(linkage, i), linkage_get_word(linkage, i));
    return words;
}

} // namespace

Reading LinkGrammarParser::bestReading(const std::string& sentence)
{
    if (Regex::trimmed(sentence).empty()) // link-grammar ends the process on a sentence without words
        return {};
    const std::lock_guard lock(mutex_);
    const ScopedUTF8Locale locale;
    lg_error_set_handler([](lg_errinfo*, void*) {}, nullptr); // of this thread alone
    if (!load())
        return {};
    const SentenceHandle parsed(sentence_create(sentence.c_str(), dictionary_.get()));
    parse_options_reset_resources(options_.get());
    if (sentence_split(parsed.get(), options_.get()) < 0 || sentence_parse(parsed.get(), options_.get()) <= 0)
        return {};
    const auto best = bestLinkage(parsed.get());
    return best ? wordsOf(best.get()) : Reading {};
}

LinkGrammarParser::LinkageHandle LinkGrammarParser::bestLinkage(Sentence sentence) const
{
    const auto count = static_cast<LinkageIdx>(sentence_num_valid_linkages(sentence));
    LinkageHandle first;
    for (LinkageIdx i = 0; i < count; ++i) {
        if (sentence_disjunct_cost(sentence, i) > sentence_disjunct_cost(sentence, 0))
            break;
        LinkageHandle linkage(linkage_create(i, sentence, options_.get()));
        if (!takesPleaseAsAction(linkage.get()))
            return linkage;
        if (!first)
            first = std::move(linkage); // kept: link-grammar leaks one that is made twice
    }
    return first;
}

bool LinkGrammarParser::load()
{
    if (std::exchange(isLoaded_, true))
        return dictionary_ != nullptr;
    dictionary_.reset(dictionary_create_lang("en"));
    options_.reset(parse_options_create());
    parse_options_set_verbosity(options_.get(), 0);
    parse_options_set_linkage_limit(options_.get(), mostReadings);
    parse_options_set_max_null_count(options_.get(), mostWordsLeftOut);
    parse_options_set_max_parse_time(options_.get(), timeLimit);
    parse_options_set_spell_guess(options_.get(), 0); // a recogniser does not misspell
    parse_options_set_repeatable_rand(options_.get(), true);
    return dictionary_ != nullptr;
}

} // namespace Sorvane
