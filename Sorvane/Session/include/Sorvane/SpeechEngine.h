// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>

#include <string>
#include <vector>

namespace Sorvane {

// Turns the samples of a dictation into text. The seam at which a test puts its own words.
//
// Main thread; the work is done elsewhere.
class SpeechEngine {
public:
    virtual ~SpeechEngine() = default;

    // What was said in 16 kHz mono samples. One at a time: a second call waits for the first.
    //
    // Errors: the engine's, with words for the user
    virtual PlatformSupport::Awaitable<std::string> transcribe(std::vector<float> samples) = 0;
};

} // namespace Sorvane
