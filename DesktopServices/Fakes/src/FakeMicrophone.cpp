// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeMicrophone.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <mutex>
#include <thread>
#include <utility>

namespace DesktopFakes {

using DesktopServices::AudioBuffer;
using DesktopServices::AudioEngine;
using DesktopServices::AudioFormat;
using DesktopServices::AudioTap;
using DesktopServices::MicrophoneError;

// What the microphone and its engine share. The lock is held while the tap is called, so that stop() waits for it.
class FakeMicrophone::Device {
public:
    explicit Device(AudioFormat deviceFormat)
        : format(deviceFormat)
    {
    }

    void hand(const AudioBuffer& buffer)
    {
        const std::lock_guard hold(lock);
        if (isRunning)
            tap.received(buffer);
    }

    mutable std::mutex lock;
    AudioFormat format;
    AudioTap tap;
    size_t tapFrames = 0;
    bool isRunning = false;
    bool hasEngine = false;
    size_t enginesMade = 0;
    std::optional<MicrophoneError> startFailure;
};

class FakeMicrophone::Engine final : public AudioEngine {
public:
    explicit Engine(std::shared_ptr<Device> device);
    ~Engine() override;

    AudioFormat inputFormat() const override { return format_; }
    void installTap(size_t bufferFrames, AudioTap tap) override;
    void start() override;
    void stop() override;

private:
    std::shared_ptr<Device> device_;
    AudioFormat format_;
};

FakeMicrophone::Engine::Engine(std::shared_ptr<Device> device)
    : device_(std::move(device))
{
    const std::lock_guard hold(device_->lock);
    PlatformSupport::precondition(!device_->hasEngine, "a second engine for one microphone");
    device_->hasEngine = true;
    ++device_->enginesMade;
    format_ = device_->format;
}

FakeMicrophone::Engine::~Engine()
{
    const std::lock_guard hold(device_->lock);
    device_->hasEngine = false;
    device_->isRunning = false;
    device_->tap = {};
}

void FakeMicrophone::Engine::installTap(size_t bufferFrames, AudioTap tap)
{
    const std::lock_guard hold(device_->lock);
    device_->tapFrames = bufferFrames;
    device_->tap = std::move(tap);
}

void FakeMicrophone::Engine::start()
{
    const std::lock_guard hold(device_->lock);
    if (const auto failure = std::exchange(device_->startFailure, std::nullopt))
        throw MicrophoneError(*failure);
    if (device_->format != format_)
        throw MicrophoneError("The microphone is gone.");
    device_->isRunning = true;
}

void FakeMicrophone::Engine::stop()
{
    const std::lock_guard hold(device_->lock);
    device_->isRunning = false;
}

FakeMicrophone::FakeMicrophone(AudioFormat format)
    : device_(std::make_shared<Device>(format))
{
}

FakeMicrophone::~FakeMicrophone() = default;

std::unique_ptr<AudioEngine> FakeMicrophone::makeEngine()
{
    return std::make_unique<Engine>(device_);
}

void FakeMicrophone::play(std::span<const float> interleaved, std::optional<size_t> framesAtOnce)
{
    const auto [format, tapFrames] = [&] {
        const std::lock_guard hold(device_->lock);
        return std::pair(device_->format, device_->tapFrames);
    }();
    const size_t step = framesAtOnce.value_or(tapFrames) * static_cast<size_t>(format.channels);
    while (step > 0 && !interleaved.empty()) {
        const auto piece = interleaved.first(std::min(step, interleaved.size()));
        device_->hand({ format, piece });
        interleaved = interleaved.subspan(piece.size());
        std::this_thread::yield(); // lets a stop() in that waits for the lock
    }
}

void FakeMicrophone::play(const AudioBuffer& buffer)
{
    device_->hand(buffer);
}

void FakeMicrophone::unplug()
{
    const std::lock_guard hold(device_->lock);
    device_->format = {};
    if (std::exchange(device_->isRunning, false))
        device_->tap.lost();
}

void FakeMicrophone::failNextStart(const MicrophoneError& error)
{
    const std::lock_guard hold(device_->lock);
    device_->startFailure = error;
}

bool FakeMicrophone::isRunning() const
{
    const std::lock_guard hold(device_->lock);
    return device_->isRunning;
}

size_t FakeMicrophone::enginesMade() const
{
    const std::lock_guard hold(device_->lock);
    return device_->enginesMade;
}

} // namespace DesktopFakes
