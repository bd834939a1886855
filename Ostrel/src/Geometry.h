// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Configuration.h>

#include <cstddef>
#include <cstdint>

namespace Ostrel {

// The numbers that follow from a model's configuration. Times are in seconds, lengths in samples.
struct Geometry {
    // Errors: OstrelError invalidModel ("model metadata has invalid geometry") when a number is so large that
    // arithmetic with it could overflow; see largestNumber.
    explicit Geometry(const Configuration& configuration);

    // A recording of 2^40 samples lasts two years at 16 kHz: no number of a sound model comes near.
    static constexpr int64_t largestNumber = int64_t { 1 } << 40;

    // Encoder frames that `samples` of audio fill: at least 1, at most encFrames.
    int64_t validFrames(int64_t samples) const noexcept;

    int64_t sampleRate;
    int64_t windowLength; // of a full window
    int64_t frameLength; // of an encoder frame: 8 hops
    double secondsPerFrame;
    int64_t cellLength; // of the cells in which a quiet spot is searched: 20 ms
    int64_t encFrames;
    size_t projectionSize; // values of one window's projections: jointHidden x encFrames
};

} // namespace Ostrel
