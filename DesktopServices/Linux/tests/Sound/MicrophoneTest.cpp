// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Sound/PrivateSoundServer.h"

#include <DesktopLinux/Sound.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <mutex>
#include <numbers>

namespace DesktopLinux {

namespace {

using DesktopServices::AudioBuffer;
using DesktopServices::AudioFormat;
using DesktopServices::AudioTap;
using DesktopServices::MicrophoneError;

// What a tap hears, on the sound server's thread.
class Ear {
public:
    AudioTap tap()
    {
        return { .received =
                     [this](const AudioBuffer& buffer) {
                         const std::lock_guard hold(lock_);
                         latest_.assign(buffer.interleaved.begin(), buffer.interleaved.end());
                         format_ = buffer.format;
                         longestBuffer_ = std::max(longestBuffer_, buffer.frames());
                         ++buffers_;
                         changed_.notify_all();
                     },
            .lost =
                [this] {
                    const std::lock_guard hold(lock_);
                    ++losses_;
                    changed_.notify_all();
                } };
    }

    void waitForBuffers(int more)
    {
        std::unique_lock hold(lock_);
        changed_.wait(hold, [this, end = buffers_ + more] { return buffers_ >= end; });
    }

    // Until the first channel is mostly a tone of this frequency.
    void waitForTone(double frequency)
    {
        std::unique_lock hold(lock_);
        changed_.wait(hold, [&] { return shareOf(frequency) > 0.5; });
    }

    void waitForLoss()
    {
        std::unique_lock hold(lock_);
        changed_.wait(hold, [this] { return losses_ > 0; });
    }

    int buffers() const
    {
        const std::lock_guard hold(lock_);
        return buffers_;
    }
    int losses() const
    {
        const std::lock_guard hold(lock_);
        return losses_;
    }
    size_t longestBuffer() const
    {
        const std::lock_guard hold(lock_);
        return longestBuffer_;
    }
    AudioFormat format() const
    {
        const std::lock_guard hold(lock_);
        return format_;
    }

private:
    double shareOf(double frequency) const
    {
        double real = 0;
        double imaginary = 0;
        double power = 0;
        const auto channels = size_t(std::max(format_.channels, 1));
        const auto frames = double(latest_.size()) / double(channels);
        for (size_t i = 0; i < latest_.size(); i += channels) {
            const double angle = 2 * std::numbers::pi * frequency * double(i / channels) / format_.sampleRate;
            real += latest_[i] * std::cos(angle);
            imaginary += latest_[i] * std::sin(angle);
            power += latest_[i] * latest_[i];
        }
        return power > 1e-3 * frames ? 2 * (real * real + imaginary * imaginary) / (power * frames) : 0;
    }

    mutable std::mutex lock_;
    std::condition_variable changed_;
    std::vector<float> latest_;
    AudioFormat format_;
    int buffers_ = 0;
    int losses_ = 0;
    size_t longestBuffer_ = 0;
};

class MicrophoneTest : public testing::Test {
protected:
    std::unique_ptr<DesktopServices::AudioEngine> engineWithTap()
    {
        auto engine = sound.microphone().makeEngine();
        engine->installTap(tapFrames, ear.tap());
        return engine;
    }

    static constexpr size_t tapFrames = 2048;
    Ear ear;
    PrivateSoundServer server;
    Sound sound;
};

TEST_F(MicrophoneTest, HearsWhatIsSaidIntoIt)
{
    server.addMicrophone("desk", 48000, 2);
    const auto engine = engineWithTap();
    EXPECT_EQ(engine->inputFormat(), (AudioFormat { 48000, 2 }));
    engine->start();
    server.beginTone("desk", 1000);
    ear.waitForTone(1000);
    EXPECT_EQ(ear.format(), engine->inputFormat());
    EXPECT_LE(ear.longestBuffer(), tapFrames);
}

TEST_F(MicrophoneTest, HasTheFormatOfTheDevice)
{
    server.addMicrophone("telephone", 16000, 1);
    const auto engine = engineWithTap();
    EXPECT_EQ(engine->inputFormat(), (AudioFormat { 16000, 1 }));
    engine->start();
    server.beginTone("telephone", 500);
    ear.waitForTone(500);
    EXPECT_EQ(ear.format(), engine->inputFormat());
}

TEST_F(MicrophoneTest, IsTheOneThatTheUserHasChosen)
{
    server.addMicrophone("first", 48000, 2);
    server.addMicrophone("second", 44100, 1);
    EXPECT_EQ(engineWithTap()->inputFormat().sampleRate, 44100);
    server.control("set-default-source first");
    EXPECT_EQ(engineWithTap()->inputFormat().sampleRate, 48000);
    server.control("set-default-source speaker.monitor"); // which is no microphone
    EXPECT_NE(engineWithTap()->inputFormat().sampleRate, 0);
}

TEST_F(MicrophoneTest, SaysNothingOnceItIsStopped)
{
    server.addMicrophone("desk", 48000, 2);
    const auto engine = engineWithTap();
    engine->start();
    ear.waitForBuffers(1);
    engine->stop();
    engine->stop();
    const auto buffers = ear.buffers();
    engine->start();
    engine->start();
    ear.waitForBuffers(2);
    EXPECT_GE(ear.buffers(), buffers + 2);
    EXPECT_EQ(ear.losses(), 0);
}

TEST_F(MicrophoneTest, IsLostWhenTheDeviceVanishes)
{
    const auto module = server.addMicrophone("desk", 48000, 2);
    const auto engine = engineWithTap();
    engine->start();
    ear.waitForBuffers(1);
    server.control("unload-module " + module);
    ear.waitForLoss();
    EXPECT_THROW(engine->start(), MicrophoneError);
    EXPECT_EQ(ear.losses(), 1);
}

// The next best source would be another microphone, or the echo of the loudspeaker.
TEST_F(MicrophoneTest, IsNeverReplacedByAnother)
{
    server.addMicrophone("other", 48000, 2);
    const auto module = server.addMicrophone("desk", 48000, 2);
    const auto engine = engineWithTap();
    engine->start();
    server.beginTone("other", 700);
    ear.waitForBuffers(1);
    server.control("unload-module " + module);
    ear.waitForLoss();
    const auto buffers = ear.buffers();
    server.control("info");
    EXPECT_EQ(ear.buffers(), buffers);
}

TEST_F(MicrophoneTest, IsLostWithTheServerAndComesBackWithIt)
{
    server.addMicrophone("desk", 48000, 2);
    const auto engine = engineWithTap();
    engine->start();
    ear.waitForBuffers(1);
    server.kill();
    ear.waitForLoss();
    EXPECT_THROW(engine->start(), MicrophoneError);
    EXPECT_EQ(sound.microphone().makeEngine()->inputFormat().sampleRate, 0);
    server.start();
    server.addMicrophone("desk", 48000, 2);
    while (sound.microphone().makeEngine()->inputFormat().sampleRate == 0) { }
    engine->start();
    ear.waitForBuffers(1);
}

TEST_F(MicrophoneTest, IsNotWaitedForWithoutEnd)
{
    server.addMicrophone("desk", 48000, 2);
    const auto engine = engineWithTap();
    server.freeze();
    EXPECT_EQ(sound.microphone().makeEngine()->inputFormat().sampleRate, 0);
    EXPECT_THROW(engine->start(), MicrophoneError);
    engine->stop();
}

TEST_F(MicrophoneTest, DoesNotExistWithoutASource)
{
    const auto engine = engineWithTap();
    EXPECT_EQ(engine->inputFormat(), AudioFormat());
    EXPECT_THROW(engine->start(), MicrophoneError);
}

TEST_F(MicrophoneTest, CanBeUsedLongerThanTheSoundItCameFrom)
{
    server.addMicrophone("desk", 48000, 2);
    std::unique_ptr<DesktopServices::AudioEngine> engine;
    {
        Sound shortLived;
        engine = shortLived.microphone().makeEngine();
    }
    engine->installTap(tapFrames, ear.tap());
    engine->start();
    ear.waitForBuffers(1);
}

} // namespace

} // namespace DesktopLinux
