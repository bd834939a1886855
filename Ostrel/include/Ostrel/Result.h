// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Word.h>

#include <string>
#include <vector>

namespace Ostrel {

// What was recognized in one piece of audio.
struct Result {
    std::string text; // the words joined by single blanks
    std::vector<Word> words; // in time order
    double duration = 0; // seconds of audio
    double processingTime = 0; // seconds that the recognition took

    // How many times faster than the audio the recognition was; 0 if it took no time.
    double realtimeFactor() const noexcept { return processingTime > 0 ? duration / processingTime : 0; }
};

} // namespace Ostrel
