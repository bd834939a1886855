// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RefineEnds.h"

#include "Arithmetic.h"
#include "Energy.h"

#include <algorithm>

namespace Ostrel {

namespace {

constexpr float audibleShare = 0.05F; // of the word's loudest stretch

// Energies of stretches of a slice, by their first sample; past the slice's end they are cut, or 0.
class Stretches {
public:
    Stretches(std::span<const float> samples, int64_t length)
        : samples_(samples)
        , length_(length)
    {
    }

    float energy(int64_t first) const
    {
        const auto count = static_cast<int64_t>(samples_.size());
        const int64_t from = std::min(first, count);
        const int64_t to = std::min(first + length_, count);
        return meanSquare(samples_.subspan(static_cast<size_t>(from), static_cast<size_t>(to - from)));
    }

    float peak(int64_t from, int64_t to) const
    {
        float highest = 0;
        for (int64_t p = from; p < to; p += length_)
            highest = std::max(highest, energy(p));
        return highest;
    }

    int64_t lastAtLeast(float limit, int64_t from, int64_t to) const
    {
        int64_t last = from;
        for (int64_t p = from; p < to; p += length_)
            if (energy(p) >= limit)
                last = p;
        return last;
    }

private:
    std::span<const float> samples_;
    int64_t length_;
};

} // namespace

std::vector<Word> refineEnds(
    std::vector<Word> words, AudioSlice slice, double windowStart, double sampleRate, double frame)
{
    if (slice.samples.empty())
        return words;

    const int64_t stretchLength = std::max<int64_t>(truncated(sampleRate * frame), 1);
    const auto sliceLength = static_cast<int64_t>(slice.samples.size());
    const Stretches stretches(slice.samples, stretchLength);
    for (Word& word : words) {
        const int64_t from = truncated((word.start - windowStart) * sampleRate);
        const int64_t to = truncated((word.end - windowStart) * sampleRate);
        if (from < 0 || from >= to || saturatingSum(to, -slice.offset) > sliceLength)
            continue;
        const float peak = stretches.peak(from, to);
        if (!(peak > 0))
            continue;
        const int64_t last = stretches.lastAtLeast(audibleShare * peak, from, to);
        const double newEnd = static_cast<double>(last + stretchLength) / sampleRate + windowStart;
        word.end = std::max(word.start, std::min(newEnd, word.end));
    }
    return words;
}

} // namespace Ostrel
