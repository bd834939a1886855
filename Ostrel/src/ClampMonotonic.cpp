// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ClampMonotonic.h"

#include <algorithm>
#include <limits>

namespace Ostrel {

void clampMonotonic(std::vector<Word>& words)
{
    double running = std::numeric_limits<double>::lowest();
    for (Word& word : words) {
        running = std::max(running, word.start);
        if (word.start != running)
            word.end = std::max(word.end, running);
        word.start = running;
    }

    for (size_t i = 0; i + 1 < words.size(); ++i) {
        Word& word = words[i];
        const double nextStart = words[i + 1].start;
        if (nextStart < word.end)
            word.end = std::max(word.start, nextStart);
    }
}

} // namespace Ostrel
