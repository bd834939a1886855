// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/AudioEngine.h>

#include <memory>
#include <stdexcept>

namespace DesktopServices {

// Why the input device cannot be used, in words for the user.
class MicrophoneError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    std::string description() const { return what(); }
};

// The input device that the user has chosen in the system's settings.
//
// Called from one thread; it outlives the engines.
class Microphone {
public:
    Microphone() = default;
    Microphone(const Microphone&) = delete;
    Microphone& operator=(const Microphone&) = delete;
    virtual ~Microphone() = default;

    // A new engine for the device of this moment, stopped. It never fails: without a device, or without an answer from
    // the sound system, the engine's input format has the sample rate 0.
    virtual std::unique_ptr<AudioEngine> makeEngine() = 0;
};

} // namespace DesktopServices
