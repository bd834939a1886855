// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Regex/Letters.h>
#include <Regex/Words.h>
#include <Sorvane/LexicalTagger.h>

#include <map>
#include <string>
#include <utility>

namespace Sorvane {

// Knows the words that a test names, in lower case; all others are `other`.
class ScriptedTagger final : public LexicalTagger {
public:
    explicit ScriptedTagger(std::map<std::string, LexicalClass> known = {})
        : known_(std::move(known))
    {
    }

    std::vector<LexicalClass> classesOfWords(std::string_view sentence) const override
    {
        std::vector<LexicalClass> classes;
        for (const auto& word : Regex::words(sentence)) {
            const auto found = known_.find(Regex::lowercased(word.text));
            classes.push_back(found == known_.end() ? LexicalClass::other : found->second);
        }
        return classes;
    }

private:
    std::map<std::string, LexicalClass> known_;
};

} // namespace Sorvane
