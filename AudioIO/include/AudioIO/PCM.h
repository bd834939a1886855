// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <vector>

namespace AudioIO {

// Audio in memory: a plain value.
//
// Samples are nominally -1..1. Several channels are interleaved frame by frame: left, right, left, right.
struct PCM {
    std::vector<float> samples;
    double sampleRate = 0; // frames per second
    int channels = 1; // samples in a frame

    bool operator==(const PCM&) const = default;
};

} // namespace AudioIO
