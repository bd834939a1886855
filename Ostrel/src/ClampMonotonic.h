// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Word.h>

#include <vector>

namespace Ostrel {

// Puts the times of a word list in order without moving words: afterwards starts do not decrease, and no word's
// end reaches past the next word's start.
void clampMonotonic(std::vector<Word>& words);

} // namespace Ostrel
