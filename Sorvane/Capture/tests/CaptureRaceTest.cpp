// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeMicrophone.h>
#include <Sorvane/AudioRecorder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace Sorvane {

namespace {

using DesktopFakes::FakeMicrophone;

constexpr float spoken = 0.5F;

// Speaks without a pause into the microphone, from a thread of its own, for as long as it lives.
class Speaker {
public:
    explicit Speaker(FakeMicrophone& microphone)
        : thread_([&microphone](const std::stop_token& stop) {
            const std::vector<float> words(64, spoken);
            while (!stop.stop_requested())
                microphone.play(words, 16);
        })
    {
    }

private:
    std::jthread thread_;
};

void waitUntilHeard(const AudioRecorder& recorder)
{
    while (recorder.meter() == 0)
        std::this_thread::yield();
}

bool isAllSpoken(const std::vector<float>& samples)
{
    return std::all_of(samples.begin(), samples.end(), [](float sample) { return sample == spoken; });
}

} // namespace

TEST(CaptureRace, StopsAndDiscardsWhileSomebodySpeaks)
{
    FakeMicrophone microphone({ 16'000, 1 });
    const Speaker speaker(microphone);
    AudioRecorder recorder(microphone);
    for (int round = 0; round < 50; ++round) {
        recorder.start();
        waitUntilHeard(recorder);
        const auto soFar = recorder.snapshot();
        EXPECT_GT(recorder.meter(), 0.5);
        const auto samples = recorder.stop();
        EXPECT_GE(samples.size(), soFar.size());
        EXPECT_TRUE(isAllSpoken(samples));

        recorder.start();
        waitUntilHeard(recorder);
        recorder.discard();
        EXPECT_EQ(recorder.sampleCount(), 0U);
    }
}

TEST(CaptureRace, PausesWhileSomebodySpeaks)
{
    FakeMicrophone microphone({ 16'000, 1 });
    const Speaker speaker(microphone);
    AudioRecorder recorder(microphone);
    recorder.start();
    for (int round = 0; round < 50; ++round) {
        waitUntilHeard(recorder);
        recorder.pause();
        const size_t paused = recorder.sampleCount();
        std::this_thread::yield();
        EXPECT_EQ(recorder.meter(), 0);
        EXPECT_EQ(recorder.sampleCount(), paused);
        recorder.resume();
    }
    waitUntilHeard(recorder);
    EXPECT_TRUE(isAllSpoken(recorder.stop()));
}

TEST(CaptureRace, ChangesItsRateWhileSomebodySpeaks)
{
    FakeMicrophone microphone({ 44'100, 2 });
    const Speaker speaker(microphone);
    AudioRecorder recorder(microphone);
    recorder.start();
    for (int round = 0; round < 20; ++round) {
        waitUntilHeard(recorder);
        recorder.pause();
        recorder.resume();
    }
    waitUntilHeard(recorder);
    EXPECT_FALSE(recorder.stop().empty());
}

TEST(CaptureRace, LosesTheMicrophoneWhileItPauses)
{
    for (int round = 0; round < 50; ++round) {
        FakeMicrophone microphone({ 16'000, 1 });
        AudioRecorder recorder(microphone);
        recorder.start();
        std::jthread unplugging([&] { microphone.unplug(); });
        recorder.pause();
        unplugging.join();
        EXPECT_FALSE(microphone.isRunning());
        EXPECT_EQ(recorder.sampleCount(), 0U);
        EXPECT_EQ(recorder.meter(), 0);
    }
}

} // namespace Sorvane
