// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/LexicalTagger.h>

namespace Sorvane {

// Knows no verb.
class PlainTagger final : public LexicalTagger {
public:
    std::vector<LexicalClass> classesOfWords(std::string_view) const override { return { LexicalClass::other }; }
};

} // namespace Sorvane
