// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string_view>
#include <vector>

namespace Sorvane {

enum class LexicalClass { verb, interjection, other };

// Tells the part of speech of English words by the sentence that they stand in.
class LexicalTagger {
public:
    virtual ~LexicalTagger() = default;

    // The class of each word from the sentence's first, without punctuation and blanks. A word that cannot be told is
    // `other`; of a long sentence only the first words may be looked at. Never throws for a text's sake. Safe on any
    // thread.
    virtual std::vector<LexicalClass> classesOfWords(std::string_view sentence) const = 0;
};

} // namespace Sorvane
