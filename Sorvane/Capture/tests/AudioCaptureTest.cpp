// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AudioCapture.h"

#include "Sound.h"

#include <Sorvane/AudioRecorder.h>

#include <gtest/gtest.h>

#include <string>

namespace Sorvane {

namespace {

using DesktopServices::AudioFormat;
using Samples = std::vector<float>;

void appendInPieces(AudioCapture& capture, AudioFormat format, std::span<const float> interleaved, size_t framesAtOnce)
{
    const size_t step = framesAtOnce * static_cast<size_t>(format.channels);
    for (size_t at = 0; at < interleaved.size(); at += step)
        capture.append({ format, interleaved.subspan(at, std::min(step, interleaved.size() - at)) });
}

std::string unavailableText(AudioFormat format)
{
    try {
        const AudioCapture capture(format);
        return "no error";
    } catch (const CaptureError& error) {
        EXPECT_EQ(error.which(), CaptureError::Case::unavailable);
        return error.description();
    }
}

std::string failureText(const AudioCapture& capture)
{
    try {
        capture.snapshot();
        return "no error";
    } catch (const CaptureError& error) {
        return error.description();
    }
}

} // namespace

TEST(AudioCapture, NeedsAMicrophone)
{
    const auto text = "The microphone is unavailable. Check your audio input in System Settings.";
    EXPECT_EQ(unavailableText({ 0, 0 }), text);
    EXPECT_EQ(unavailableText({ 0, 2 }), text);
    EXPECT_EQ(unavailableText({ -48'000, 2 }), text);
    EXPECT_EQ(unavailableText({ 48'000, 0 }), text);
}

TEST(AudioCapture, AsksForRoomForEachBuffer)
{
    EXPECT_EQ(AudioCapture::outputCapacity(2048, 48'000), 715U);
    EXPECT_EQ(AudioCapture::outputCapacity(2048, 16'000), 2080U);
    EXPECT_EQ(AudioCapture::outputCapacity(2048, 8'000), 4128U);
    EXPECT_EQ(AudioCapture::outputCapacity(0, 44'100), 32U);
    EXPECT_EQ(AudioCapture::outputCapacity(1, 44'100), 33U);
}

class CapturedFormat : public testing::TestWithParam<std::tuple<int, int>> { };

TEST_P(CapturedFormat, BecomesSixteenKilohertzMono)
{
    const auto [rate, channels] = GetParam();
    const AudioFormat format { rate, channels };
    AudioCapture capture(format);
    appendInPieces(capture, format, glide(rate, channels, static_cast<size_t>(rate) / 2), 2048);
    capture.pause();

    const auto samples = capture.snapshot();
    EXPECT_NEAR(static_cast<double>(samples.size()), 8'000, 1);
    const auto expected = glide(16'000, 1, 8'000);
    const std::span middle(samples.data() + 2'000, 4'000);
    EXPECT_LT(worstDifference(middle, std::span(expected).subspan(2'000, 4'000)), 2e-3);
}

TEST_P(CapturedFormat, DoesNotDependOnTheSizeOfTheBuffers)
{
    const auto [rate, channels] = GetParam();
    const AudioFormat format { rate, channels };
    const auto sound = glide(rate, channels, static_cast<size_t>(rate) / 8);
    const auto expected = convertedAtOnce(sound, rate, channels);
    for (const size_t size : { 1, 7, 441, 2048, 2049, 1 << 20 }) {
        AudioCapture capture(format);
        appendInPieces(capture, format, sound, size);
        capture.pause();
        const auto samples = capture.snapshot();
        EXPECT_EQ(samples.size(), expected.size()) << size << " frames at once";
        EXPECT_LT(worstDifference(samples, expected), 1e-6) << size << " frames at once";
    }
}

INSTANTIATE_TEST_SUITE_P(, CapturedFormat,
    testing::Combine(testing::Values(8'000, 16'000, 44'100, 48'000, 96'000, 192'000), testing::Values(1, 2, 3, 6, 8)));

TEST(AudioCapture, HearsEveryInputOfADevice)
{
    for (int speaking = 0; speaking < 6; ++speaking) {
        AudioCapture capture({ 16'000, 6 });
        Samples frame(6, 0);
        frame[static_cast<size_t>(speaking)] = 0.6F;
        capture.append({ { 16'000, 6 }, frame });
        EXPECT_FLOAT_EQ(capture.snapshot().at(0), 0.1F) << speaking;
    }
}

TEST(AudioCapture, MetersTheLatestBuffer)
{
    AudioCapture capture({ 16'000, 1 });
    EXPECT_EQ(capture.meter(), 0);
    capture.append({ { 16'000, 1 }, Samples(2048, 1) });
    EXPECT_EQ(capture.meter(), 1);
    capture.append({ { 16'000, 1 }, Samples(2048, 0.1F) });
    EXPECT_NEAR(capture.meter(), 35 / 55.0, 1e-5);
    capture.append({ { 16'000, 1 }, {} });
    EXPECT_EQ(capture.meter(), 0);
}

TEST(AudioCapture, StopsGrowingAfterFiveMinutesAndMetersOn)
{
    AudioCapture capture({ 16'000, 1 });
    capture.append({ { 16'000, 1 }, Samples(AudioRecorder::capacity - 1'000, 0) });
    capture.append({ { 16'000, 1 }, Samples(2048, 0.5F) });
    EXPECT_EQ(capture.sampleCount(), 4'800'000U);
    capture.append({ { 16'000, 1 }, Samples(2048, 1) });
    EXPECT_EQ(capture.sampleCount(), 4'800'000U);
    EXPECT_EQ(capture.meter(), 1);

    const auto samples = capture.snapshot();
    EXPECT_EQ(samples.size(), 4'800'000U);
    EXPECT_EQ(samples[4'798'999], 0);
    EXPECT_EQ(samples[4'799'000], 0.5F);
    EXPECT_EQ(samples.back(), 0.5F);
}

TEST(AudioCapture, DropsWhatIsHeardWhilePaused)
{
    AudioCapture capture({ 16'000, 1 });
    capture.append({ { 16'000, 1 }, Samples(10, 0.25F) });
    capture.pause();
    EXPECT_EQ(capture.meter(), 0);
    capture.append({ { 16'000, 1 }, Samples(10, 0.5F) });
    EXPECT_EQ(capture.meter(), 0);
    EXPECT_EQ(capture.snapshot(), Samples(10, 0.25F));

    capture.resume();
    capture.append({ { 16'000, 1 }, Samples(1, 0.75F) });
    EXPECT_EQ(capture.sampleCount(), 11U);
    EXPECT_EQ(capture.snapshot().back(), 0.75F);
}

TEST(AudioCapture, EndsItsAudioOncePerPause)
{
    const auto sound = glide(48'000, 1, 4'800);
    AudioCapture capture({ 48'000, 1 });
    capture.resume(); // not paused: the converter keeps what it holds
    appendInPieces(capture, { 48'000, 1 }, std::span(sound).first(2'400), 480);
    capture.resume();
    appendInPieces(capture, { 48'000, 1 }, std::span(sound).subspan(2'400), 480);
    capture.pause();
    capture.pause();
    const auto samples = capture.snapshot();
    const auto expected = convertedAtOnce(sound, 48'000, 1);
    EXPECT_EQ(samples.size(), expected.size());
    EXPECT_LT(worstDifference(samples, expected), 1e-6);
}

TEST(AudioCapture, KeepsTheLatestFailureAndGoesOn)
{
    AudioCapture capture({ 16'000, 1 });
    capture.append({ { 44'100, 2 }, Samples(20, 1) });
    EXPECT_EQ(capture.sampleCount(), 0U);
    EXPECT_EQ(failureText(capture), "Audio conversion failed: The format of the microphone changed");

    capture.append({ { 16'000, 1 }, Samples(20, 1) });
    EXPECT_EQ(capture.sampleCount(), 20U);
    EXPECT_EQ(capture.meter(), 1);
    EXPECT_EQ(failureText(capture), "Audio conversion failed: The format of the microphone changed");

    capture.fail(CaptureError::unavailable());
    EXPECT_EQ(capture.meter(), 0);
    EXPECT_EQ(failureText(capture), CaptureError::unavailable().description());
    capture.fail(CaptureError::conversion("out of order"));
    EXPECT_EQ(failureText(capture), "Audio conversion failed: out of order");
}

} // namespace Sorvane
