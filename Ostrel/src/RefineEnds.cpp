// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RefineEnds.h"

#include "Arithmetic.h"
#include "Energy.h"

#include <algorithm>
#include <numeric>

namespace Ostrel {

namespace {

constexpr float audibleShare = 0.05F; // of the word's loudest stretch

// Energies of the stretches from `from` to `to`; past the slice's end they are cut, or 0.
void measure(std::span<const float> slice, int64_t from, int64_t to, int64_t length, std::vector<float>& energies)
{
    energies.clear();
    const auto count = static_cast<int64_t>(slice.size());
    for (int64_t first = from; first < to; first += length) {
        const int64_t begin = std::min(first, count);
        const int64_t end = std::min(first + length, count);
        energies.push_back(meanSquare(slice.subspan(static_cast<size_t>(begin), static_cast<size_t>(end - begin))));
    }
}

} // namespace

std::vector<Word> refineEnds(
    std::vector<Word> words, AudioSlice slice, double windowStart, double sampleRate, double frame)
{
    if (slice.samples.empty())
        return words;

    const int64_t stretchLength = std::max<int64_t>(truncated(sampleRate * frame), 1);
    const auto sliceLength = static_cast<int64_t>(slice.samples.size());
    std::vector<float> energies;
    for (Word& word : words) {
        const int64_t from = truncated((word.start - windowStart) * sampleRate);
        const int64_t to = truncated((word.end - windowStart) * sampleRate);
        if (from < 0 || from >= to || saturatingSum(to, -slice.offset) > sliceLength)
            continue;
        measure(slice.samples, from, to, stretchLength, energies);
        const float peak
            = std::accumulate(energies.begin(), energies.end(), 0.0F, [](float a, float b) { return std::max(a, b); });
        if (!(peak > 0))
            continue;
        const auto audible = std::find_if(
            energies.rbegin(), energies.rend(), [&](float energy) { return energy >= audibleShare * peak; });
        const int64_t last = from + (energies.rend() - audible - 1) * stretchLength;
        const double newEnd = static_cast<double>(last + stretchLength) / sampleRate + windowStart;
        word.end = std::max(word.start, std::min(newEnd, word.end));
    }
    return words;
}

} // namespace Ostrel
