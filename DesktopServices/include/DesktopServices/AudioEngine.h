// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <functional>
#include <span>

namespace DesktopServices {

// In what form the samples of an input device come.
struct AudioFormat {
    int sampleRate = 0; // Hz; 0 where there is no device
    int channels = 0; // interleaved frame by frame

    bool operator==(const AudioFormat&) const = default;
};

// A piece of what was heard. The samples are lent for the call that hands them over.
struct AudioBuffer {
    AudioFormat format;
    std::span<const float> interleaved; // whole frames, nominally -1..1

    size_t frames() const { return interleaved.size() / static_cast<size_t>(format.channels); }
};

// What an audio engine calls while it runs: on a thread of its own, one call at a time, with no lock held that
// start() or stop() do not take themselves. Neither may throw, wait for long, or call the engine.
struct AudioTap {
    std::function<void(const AudioBuffer&)> received;
    std::function<void()> lost; // the device is gone: nothing more comes, and the engine does not run any longer
};

// One use of the system's input device, from its choice to its release.
//
// An engine stays with the device it has found. When that vanishes, the tap is told, and it is never replaced by
// another one: what that hears is not what the user is saying into the microphone.
//
// All functions are called from one thread.
class AudioEngine {
public:
    AudioEngine() = default;
    AudioEngine(const AudioEngine&) = delete;
    AudioEngine& operator=(const AudioEngine&) = delete;
    virtual ~AudioEngine() = default; // stops

    // The device's own format, fixed for the life of the engine; sample rate 0 if there is no device.
    virtual AudioFormat inputFormat() const = 0;

    // Sets who listens, before the first start. The buffers have about `bufferFrames` frames, in the input format.
    virtual void installTap(size_t bufferFrames, AudioTap tap) = 0;

    // Opens the device and lets the tap be called; nothing happens if the engine runs. It may be started again after a
    // stop, with the same tap.
    //
    // Errors: MicrophoneError
    virtual void start() = 0;

    // Releases the device; nothing happens if the engine does not run. On return no call of the tap is under way, so
    // the caller must hold no lock that the tap takes.
    virtual void stop() = 0;
};

} // namespace DesktopServices
