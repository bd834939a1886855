// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Sound.h"

#include <DesktopFakes/FakeMicrophone.h>
#include <Sorvane/AudioRecorder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace Sorvane {

namespace {

using DesktopFakes::FakeMicrophone;
using DesktopServices::AudioFormat;
using DesktopServices::MicrophoneError;
using Samples = std::vector<float>;

constexpr AudioFormat telephone { 16'000, 1 }; // samples come through as they are
constexpr AudioFormat studio { 48'000, 2 };

template <typename Error, typename Step> std::string errorOf(Step step)
{
    try {
        step();
        return "no error";
    } catch (const Error& error) {
        return error.description();
    }
}

} // namespace

TEST(AudioRecorder, GivesWhatWasHeard)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    recorder.start();
    EXPECT_TRUE(microphone.isRunning());
    const auto sound = glide(16'000, 1, 5'000);
    microphone.play(sound);
    EXPECT_EQ(recorder.sampleCount(), 5'000U);
    EXPECT_GT(recorder.meter(), 0.8);
    EXPECT_EQ(recorder.snapshot(), sound);
    EXPECT_EQ(recorder.stop(), sound);
    EXPECT_FALSE(microphone.isRunning());
}

TEST(AudioRecorder, AsksForBuffersOf2048Frames)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    recorder.start();
    Samples sound(2048 + 1, 1);
    sound.back() = 0;
    microphone.play(sound);
    EXPECT_EQ(recorder.meter(), 0); // of the one sample beyond
    std::fill_n(sound.begin() + 1024, 1024, 0.0F);
    microphone.play(std::span(sound).first(2048));
    EXPECT_GT(recorder.meter(), 0.9); // of the loud half, too
}

TEST(AudioRecorder, EndsAPausedRecording)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    recorder.start();
    microphone.play(Samples(100, 0.5F));
    recorder.pause();
    EXPECT_EQ(recorder.stop(), Samples(100, 0.5F));
    recorder.start();
    microphone.play(Samples(100, 0.5F));
    recorder.pause();
    recorder.discard();
    EXPECT_EQ(recorder.sampleCount(), 0U);
    EXPECT_FALSE(microphone.isRunning());
}

TEST(AudioRecorder, LosesNothingOfTheEnd)
{
    FakeMicrophone microphone(studio);
    AudioRecorder recorder(microphone);
    recorder.start();
    const auto sound = glide(48'000, 2, 10'000);
    microphone.play(sound);
    const auto soFar = recorder.snapshot();
    const auto samples = recorder.stop();
    EXPECT_EQ(samples.size(), convertedAtOnce(sound, 48'000, 2).size());
    ASSERT_LT(soFar.size(), samples.size());
    EXPECT_EQ(worstDifference(soFar, samples), 0);
}

TEST(AudioRecorder, IsEmptyWhenIdle)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    const auto expectIdle = [&] {
        EXPECT_TRUE(recorder.snapshot().empty());
        EXPECT_TRUE(recorder.stop().empty());
        EXPECT_EQ(recorder.sampleCount(), 0U);
        EXPECT_EQ(recorder.meter(), 0);
        recorder.pause();
        recorder.discard();
        EXPECT_EQ(errorOf<CaptureError>([&] { recorder.resume(); }),
            "The microphone is unavailable. Check your audio input in System Settings.");
    };
    expectIdle();
    recorder.start();
    microphone.play(Samples(100, 1));
    recorder.discard();
    EXPECT_FALSE(microphone.isRunning());
    expectIdle();
    recorder.start();
    recorder.stop();
    expectIdle();
}

TEST(AudioRecorder, BeginsAnewFromAnyState)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    recorder.start();
    microphone.play(Samples(100, 0.25F));
    recorder.start();
    EXPECT_EQ(recorder.sampleCount(), 0U);
    microphone.play(Samples(3, 0.5F));
    recorder.pause();
    recorder.start();
    EXPECT_TRUE(microphone.isRunning());
    microphone.play(Samples(2, 0.75F));
    EXPECT_EQ(recorder.stop(), Samples(2, 0.75F));
    EXPECT_EQ(microphone.enginesMade(), 3U);
}

TEST(AudioRecorder, ReleasesTheMicrophoneWhilePaused)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    recorder.start();
    microphone.play(Samples(100, 0.5F));
    recorder.pause();
    recorder.pause();
    EXPECT_FALSE(microphone.isRunning());
    EXPECT_EQ(recorder.meter(), 0);
    EXPECT_EQ(recorder.sampleCount(), 100U);
    microphone.play(Samples(50, 1));
    recorder.resume();
    EXPECT_TRUE(microphone.isRunning());
    recorder.resume();
    microphone.play(Samples(1, 0.75F));
    EXPECT_EQ(recorder.sampleCount(), 101U);
    EXPECT_EQ(microphone.enginesMade(), 1U);
    recorder.pause();
    EXPECT_EQ(recorder.stop().size(), 101U);
}

class PausedRecording : public testing::TestWithParam<AudioFormat> { };

TEST_P(PausedRecording, GoesOnWithoutAGapOrARepetition)
{
    const auto format = GetParam();
    FakeMicrophone microphone(format);
    AudioRecorder recorder(microphone);
    const auto frames = static_cast<size_t>(format.sampleRate);
    const auto sound = glide(format.sampleRate, format.channels, frames);
    const size_t pauseAt = frames / 2 * static_cast<size_t>(format.channels);

    recorder.start();
    microphone.play(std::span(sound).first(pauseAt));
    recorder.pause();
    microphone.play(Samples(pauseAt, 1));
    recorder.resume();
    microphone.play(std::span(sound).subspan(pauseAt));
    const auto paused = recorder.stop();

    // At the seam the filter sees the end of one piece and the beginning of another.
    const auto whole = convertedAtOnce(sound, format.sampleRate, format.channels);
    EXPECT_NEAR(static_cast<double>(paused.size()), static_cast<double>(whole.size()), 1);
    constexpr size_t seam = 200;
    EXPECT_LT(worstDifference(std::span(paused).first(8'000 - seam), whole), 1e-6);
    EXPECT_LT(worstDifference(std::span(paused).subspan(8'000 + seam), std::span(whole).subspan(8'000 + seam)), 1e-3);
    EXPECT_LT(worstDifference(paused, whole), 0.5); // below what the pause held
}

INSTANTIATE_TEST_SUITE_P(, PausedRecording,
    testing::Values(AudioFormat { 8'000, 1 }, AudioFormat { 16'000, 1 }, AudioFormat { 44'100, 2 },
        AudioFormat { 48'000, 2 }, AudioFormat { 96'000, 4 }, AudioFormat { 192'000, 8 }));

TEST(AudioRecorder, NeedsAMicrophone)
{
    FakeMicrophone microphone({ 0, 0 });
    AudioRecorder recorder(microphone);
    EXPECT_EQ(errorOf<CaptureError>([&] { recorder.start(); }),
        "The microphone is unavailable. Check your audio input in System Settings.");
    EXPECT_TRUE(recorder.stop().empty());
}

TEST(AudioRecorder, PassesAFailedStartOnAndIsIdle)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    recorder.start();
    microphone.play(Samples(10, 1));
    microphone.failNextStart(MicrophoneError("The sound server refuses."));
    EXPECT_EQ(errorOf<MicrophoneError>([&] { recorder.start(); }), "The sound server refuses.");
    EXPECT_FALSE(microphone.isRunning());
    EXPECT_TRUE(recorder.stop().empty());
    recorder.start();
    EXPECT_TRUE(microphone.isRunning());
}

TEST(AudioRecorder, StaysPausedWhenItCannotGoOn)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    recorder.start();
    microphone.play(Samples(10, 0.5F));
    recorder.pause();
    microphone.failNextStart(MicrophoneError("The sound server refuses."));
    EXPECT_EQ(errorOf<MicrophoneError>([&] { recorder.resume(); }), "The sound server refuses.");
    EXPECT_FALSE(microphone.isRunning());
    EXPECT_EQ(recorder.snapshot(), Samples(10, 0.5F));
    recorder.resume();
    microphone.play(Samples(1, 0.5F));
    EXPECT_EQ(recorder.stop(), Samples(11, 0.5F));
}

TEST(AudioRecorder, FailsAsAWholeAfterOneFailedConversion)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    recorder.start();
    microphone.play(Samples(10, 0.5F));
    microphone.play({ studio, Samples(20, 0.5F) });
    microphone.play(Samples(10, 0.5F));
    const auto text = "Audio conversion failed: The format of the microphone changed";
    EXPECT_EQ(recorder.sampleCount(), 20U);
    EXPECT_EQ(errorOf<CaptureError>([&] { recorder.snapshot(); }), text);
    EXPECT_EQ(errorOf<CaptureError>([&] { recorder.stop(); }), text);
    EXPECT_FALSE(microphone.isRunning());
    EXPECT_TRUE(recorder.stop().empty());

    recorder.start();
    microphone.play(Samples(1, 0.5F));
    EXPECT_EQ(recorder.stop(), Samples(1, 0.5F));
}

TEST(AudioRecorder, FailsWhenTheMicrophoneVanishes)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    recorder.start();
    microphone.play(Samples(10, 0.5F));
    microphone.unplug();
    EXPECT_EQ(recorder.meter(), 0);
    EXPECT_EQ(recorder.sampleCount(), 10U);
    EXPECT_EQ(errorOf<CaptureError>([&] { recorder.stop(); }), CaptureError::unavailable().description());
    EXPECT_EQ(errorOf<CaptureError>([&] { recorder.start(); }), CaptureError::unavailable().description());
}

TEST(AudioRecorder, KeepsItsSamplesWhenTheMicrophoneVanishesDuringAPause)
{
    FakeMicrophone microphone(telephone);
    AudioRecorder recorder(microphone);
    recorder.start();
    microphone.play(Samples(10, 0.5F));
    recorder.pause();
    microphone.unplug();
    EXPECT_EQ(errorOf<MicrophoneError>([&] { recorder.resume(); }), "The microphone is gone.");
    EXPECT_EQ(recorder.stop(), Samples(10, 0.5F));
}

TEST(AudioRecorder, LetsGoOfTheMicrophoneAtItsEnd)
{
    FakeMicrophone microphone(telephone);
    {
        AudioRecorder recorder(microphone);
        recorder.start();
    }
    EXPECT_FALSE(microphone.isRunning());
    microphone.play(Samples(10, 1));
}

} // namespace Sorvane
