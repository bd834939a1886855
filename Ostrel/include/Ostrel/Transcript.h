// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Word.h>

#include <string>
#include <vector>

namespace Ostrel {

// The words of a recording in time order, and their texts joined by single blanks.
struct Transcript {
    std::string text;
    std::vector<Word> words;
};

} // namespace Ostrel
