// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Suspects.h"

#include "Arithmetic.h"
#include "Energy.h"

#include <algorithm>

namespace Ostrel {

namespace {

constexpr size_t energyStride = 16; // so that checking costs nothing beside the stages
constexpr float audibleEnergy = 1e-5F; // above it, a window without tokens is suspect
constexpr double longestGapSeconds = 2.5;
constexpr float quietShare = 0.25F; // of the window's energy: a gap that is quieter holds no speech
constexpr double emptyWindowShare = 0.93; // of its length: what of an empty window is tried again

float sparseEnergy(const AudioBuffer& audio, int64_t from, int64_t to)
{
    return meanSquare(audio.range(from, to), energyStride);
}

int64_t sampleOf(int64_t frame, const Window& window, const Geometry& geometry)
{
    const double seconds = geometry.secondsPerFrame * static_cast<double>(frame);
    return window.start + truncated(seconds * static_cast<double>(geometry.sampleRate));
}

bool isLong(int64_t frames, const Geometry& geometry)
{
    return static_cast<double>(frames) * geometry.secondsPerFrame > longestGapSeconds;
}

// The centre of the first of the quietest cells from `from` to `to`; none if no cell fits.
std::optional<int64_t> quietestSpot(int64_t from, int64_t to, const AudioBuffer& audio, int64_t cellLength)
{
    std::optional<int64_t> spot;
    float lowest = 0;
    for (int64_t cell = from; cell + cellLength <= to; cell += cellLength) {
        const float energy = sumOfSquares(audio.range(cell, cell + cellLength));
        if (!spot || energy < lowest) {
            lowest = energy;
            spot = cell + cellLength / 2;
        }
    }
    return spot;
}

// Half a second after the gap's start at most, and a second before it, but inside what is held.
int64_t quietStart(int64_t gapStart, const Window& window, const AudioBuffer& audio, const Geometry& geometry)
{
    const int64_t from = std::max(gapStart - geometry.sampleRate, window.start);
    const int64_t to = std::min(gapStart + geometry.sampleRate / 2, audio.end() - geometry.cellLength);
    if (from >= to)
        return std::max(std::min(audio.end() - 1, gapStart), window.start);
    return quietestSpot(from, to, audio, geometry.cellLength).value_or(gapStart);
}

} // namespace

Gap largestGap(std::span<const int64_t> frames, int64_t validFrames)
{
    std::optional<Gap> largest;
    int64_t previous = 0;
    const auto consider = [&](int64_t frame) {
        const Gap gap { previous, frame };
        if (!largest || gap.length() > largest->length())
            largest = gap;
        previous = std::max(previous, frame);
    };
    for (const int64_t frame : frames)
        consider(frame);
    consider(validFrames);
    return *largest;
}

bool isSuspect(const Window& window, const AudioBuffer& audio, const Geometry& geometry)
{
    if (window.result.tokens.empty())
        return sparseEnergy(audio, window.start, window.stop) > audibleEnergy;

    const Gap gap = largestGap(window.result.frames, window.validFrames);
    if (!isLong(gap.length(), geometry))
        return false;
    const int64_t from = sampleOf(gap.start, window, geometry);
    const int64_t to = std::min(sampleOf(gap.end, window, geometry), window.stop);
    if (from >= to)
        return false;
    return quietShare * sparseEnergy(audio, window.start, window.stop) < sparseEnergy(audio, from, to);
}

RetryRange retryRange(const Window& window, const AudioBuffer& audio, const Geometry& geometry)
{
    if (window.result.tokens.empty()) {
        const int64_t length = std::min(audio.end(), window.start + geometry.windowLength) - window.start;
        return { window.start, window.start + truncated(static_cast<double>(length) * emptyWindowShare) };
    }
    const Gap gap = largestGap(window.result.frames, window.validFrames);
    const int64_t start = quietStart(sampleOf(gap.start, window, geometry), window, audio, geometry);
    return { start, std::min(audio.end(), start + geometry.windowLength) };
}

bool retryFailed(const WindowTokens& result, int64_t validFrames, const Geometry& geometry)
{
    return result.tokens.empty() || isLong(validFrames - result.frames.back(), geometry);
}

} // namespace Ostrel
