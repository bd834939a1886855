// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Configuration.h>

namespace Ostrel {

// A small sound geometry: windows of 40 s at 100 Hz, encoder frames of 0.8 s.
inline Configuration testConfiguration()
{
    return {
        .sampleRate = 100,
        .hopLength = 10,
        .nSamples = 4000,
        .nRows = 402,
        .nMels = 2,
        .nFFT = 20,
        .preemph = 0.5F,
        .nPaddedSamples = 4020,
        .validFrames = 400,
        .encFrames = 50,
        .jointHidden = 2,
        .predHidden = 3,
        .predLayers = 2,
        .vocabSize = 4,
        .blankIdx = 4,
        .durations = { 0, 1, 2, 3, 4 },
        .decodeWidth = 4,
    };
}

} // namespace Ostrel
