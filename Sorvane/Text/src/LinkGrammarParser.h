// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <link-grammar/link-includes.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace Sorvane {

// How a sentence was read: its words by the byte at which they start, as link-grammar writes them. "buy.v" is a verb,
// "milk.n-u" a noun, "[um]" fits into no reading, "the" is never anything else.
using Reading = std::map<size_t, std::string>;

// link-grammar with its English dictionary, which the first sentence loads. Safe on any thread; sentences take turns.
// It changes neither the program's locale nor prints anything.
class LinkGrammarParser {
public:
    // The best reading of a short sentence in UTF-8; empty if there is none or no dictionary. Of readings that cost the
    // same, one is preferred that takes an opening "please" as a request and not as the action.
    Reading bestReading(const std::string& sentence);

private:
    template <auto destroy> struct Deleter {
        template <typename T> void operator()(T* handle) const { destroy(handle); }
    };
    using DictionaryHandle = std::unique_ptr<Dictionary_s, Deleter<dictionary_delete>>;
    using OptionsHandle = std::unique_ptr<Parse_Options_s, Deleter<parse_options_delete>>;
    using SentenceHandle = std::unique_ptr<Sentence_s, Deleter<sentence_delete>>;
    using LinkageHandle = std::unique_ptr<Linkage_s, Deleter<linkage_delete>>;

    bool load();
    LinkageHandle bestLinkage(Sentence sentence) const;

    std::mutex mutex_;
    bool isLoaded_ = false;
    DictionaryHandle dictionary_;
    OptionsHandle options_;
};

} // namespace Sorvane
