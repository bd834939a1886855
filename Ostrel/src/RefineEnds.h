// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Word.h>

#include <cstdint>
#include <span>
#include <vector>

namespace Ostrel {

// The samples of one window, and where they lie in the buffer that holds them.
struct AudioSlice {
    std::span<const float> samples;
    int64_t offset = 0;
};

// Moves each word's end forward to where its sound ends: the last stretch of `frame` seconds that has at least a
// twentieth of the loudest stretch's energy. Times are seconds of the whole audio; the slice starts at
// `windowStart`. Words that are silent, or whose times do not lie in the slice, stay as they are.
//
// The slice's offset is subtracted from a word's end, although that end is relative to the window already: so
// the test whether a word lies in the slice is looser than it looks for slices further into the buffer, and what
// lies past the slice's end has no energy.
std::vector<Word> refineEnds(
    std::vector<Word> words, AudioSlice slice, double windowStart, double sampleRate, double frame);

} // namespace Ostrel
