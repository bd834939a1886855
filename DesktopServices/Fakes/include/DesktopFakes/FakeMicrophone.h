// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Microphone.h>

#include <memory>
#include <optional>

namespace DesktopFakes {

// A microphone that hears what it is told to.
//
// One engine may exist at a time. play() and unplug() may be called on any thread, which is then the engine's thread;
// the rest belongs to the thread that uses the engine.
class FakeMicrophone final : public DesktopServices::Microphone {
public:
    explicit FakeMicrophone(DesktopServices::AudioFormat format);
    ~FakeMicrophone() override;

    std::unique_ptr<DesktopServices::AudioEngine> makeEngine() override;

    // Speaks: hands the samples to the tap in buffers of so many frames (by default as many as the tap asked for), the
    // last one shorter, and comes back when all are handed over. What is said while no engine runs is not heard.
    void play(std::span<const float> interleaved, std::optional<size_t> framesAtOnce = std::nullopt);

    // As a device would that changes while it is heard: one buffer in a format of its own.
    void play(const DesktopServices::AudioBuffer& buffer);

    // The device vanishes: a running engine tells its tap and stops; from now on no engine finds one.
    void unplug();

    // The next start of an engine fails so.
    void failNextStart(const DesktopServices::MicrophoneError& error);

    bool isRunning() const; // an engine is listening
    size_t enginesMade() const;

private:
    class Device;
    class Engine;
    std::shared_ptr<Device> device_;
};

} // namespace DesktopFakes
