// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Word.h>

#include <vector>

namespace Ostrel {

// Merges the words so far with those of a newer window that begins at `boundary` seconds, where both may have
// heard the same `overlap` seconds on either side of it.
//
// The longest run of at least two words that both have, in the overlap and within a second of each other, is
// the seam: the older words up to its end, then the newer ones. Without such a run the boundary decides. The
// seam is then mended by repairJoin().
std::vector<Word> spliceOverlap(std::vector<Word> left, std::vector<Word> right, double boundary, double overlap);

// Joins two lists: a word that ends the one and begins the other, heard twice, is dropped once, and a full stop
// that the left window set only because it was cut there is taken away.
std::vector<Word> repairJoin(std::vector<Word> left, std::vector<Word> right);

} // namespace Ostrel
