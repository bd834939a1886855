// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Tone.h"

#include <AudioIO/AudioConverter.h>
#include <AudioIO/AudioIOError.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace AudioIO {

namespace {

using Samples = std::vector<float>;

Samples converted(const Samples& interleaved, AudioConverter::Format from, int toRate, size_t framesAtOnce = 1 << 20)
{
    AudioConverter converter(from, toRate);
    Samples mono;
    const size_t step = framesAtOnce * static_cast<size_t>(from.channels);
    for (size_t at = 0; at < interleaved.size(); at += step)
        converter.convert(std::span(interleaved).subspan(at, std::min(step, interleaved.size() - at)), mono);
    converter.drain(mono);
    return mono;
}

double worstDifference(std::span<const float> a, std::span<const float> b)
{
    double worst = 0;
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        worst = std::max(worst, std::abs(static_cast<double>(a[i]) - b[i]));
    return worst;
}

} // namespace

class ConversionTo16kHz : public testing::TestWithParam<int> { };

TEST_P(ConversionTo16kHz, KeepsToneLevelAndTime)
{
    const int rate = GetParam();
    const auto mono = converted(tone(rate, 1, static_cast<size_t>(rate)), { rate, 1 }, 16'000);
    const auto expected = tone(16'000, 1, 16'000);
    EXPECT_NEAR(static_cast<double>(mono.size()), 16'000, 1);
    EXPECT_LT(worstDifference(middleHalf(mono), middleHalf(expected)), 1e-3); // also a shift of 0.02 samples shows
}

TEST_P(ConversionTo16kHz, GivesTheSameInPiecesOfAnySize)
{
    const int rate = GetParam();
    const auto stereo = tone(rate, 2, static_cast<size_t>(rate) / 4);
    const auto whole = converted(stereo, { rate, 2 }, 16'000);
    for (const size_t size : { 1, 7, 160, 1024, 5000 }) {
        const auto pieces = converted(stereo, { rate, 2 }, 16'000, size);
        EXPECT_EQ(pieces.size(), whole.size()) << size << " frames at once";
        EXPECT_LT(worstDifference(pieces, whole), 1e-6) << size << " frames at once";
    }
}

TEST_P(ConversionTo16kHz, BeginsAnewAfterAReset)
{
    const int rate = GetParam();
    const auto stereo = tone(rate, 2, static_cast<size_t>(rate) / 10);
    AudioConverter converter({ rate, 2 }, 16'000);
    Samples first;
    converter.convert(stereo, first);
    converter.reset(); // with audio still held back
    Samples second;
    converter.convert(stereo, second);
    converter.drain(second);
    converter.reset(); // after the end
    Samples third;
    converter.convert(stereo, third);
    converter.drain(third);

    const auto expected = converted(stereo, { rate, 2 }, 16'000);
    EXPECT_EQ(second, expected);
    EXPECT_EQ(third, expected);
}

INSTANTIATE_TEST_SUITE_P(, ConversionTo16kHz,
    testing::Values(8'000, 11'025, 16'000, 22'050, 24'000, 32'000, 44'100, 44'101, 48'000, 96'000, 192'000));

TEST(AudioConverter, LetsNoToneAboveTheNewLimitFoldDown)
{
    for (const int rate : { 22'050, 44'100, 44'101, 48'000, 192'000 }) {
        const auto high = tone(rate, 1, static_cast<size_t>(rate), 9'500);
        EXPECT_LT(level(middleHalf(converted(high, { rate, 1 }, 16'000))), 1e-3) << rate;
    }
}

TEST(AudioConverter, KeepsSpeechUpToSevenKilohertz)
{
    for (const int rate : { 16'000, 22'050, 44'100, 44'101, 48'000, 192'000 }) {
        const auto bright = tone(rate, 1, static_cast<size_t>(rate), 7'000);
        EXPECT_NEAR(level(middleHalf(converted(bright, { rate, 1 }, 16'000))), toneLevel, 0.005) << rate;
    }
}

TEST(AudioConverter, PassesMonoAtTheSameRateThroughBitForBit)
{
    const Samples samples { 0.1F, -2.0F, 1e-30F, 3.0F };
    EXPECT_EQ(converted(samples, { 16'000, 1 }, 16'000), samples);
}

TEST(AudioConverter, MixesStereoByHalves)
{
    const auto mono = converted({ 1, 1, 1, 0, 0, 1, -1, 1 }, { 16'000, 2 }, 16'000);
    ASSERT_EQ(mono.size(), 4U);
    EXPECT_FLOAT_EQ(mono[0], 1);
    EXPECT_FLOAT_EQ(mono[1], 0.5F);
    EXPECT_FLOAT_EQ(mono[2], 0.5F);
    EXPECT_FLOAT_EQ(mono[3], 0);
}

TEST(AudioConverter, HearsTheVoiceInTheCentreOfSurroundSoundAndNotTheBass)
{
    const auto voice = converted({ 0, 0, 1, 0, 0, 0 }, { 16'000, 6 }, 16'000);
    const auto bass = converted({ 0, 0, 0, 1, 0, 0 }, { 16'000, 6 }, 16'000);
    ASSERT_EQ(voice.size(), 1U);
    EXPECT_GT(voice[0], 0.25F);
    EXPECT_EQ(bass[0], 0);
}

TEST(AudioConverter, NeverGoesBeyondFullScaleByMixing)
{
    for (int channels = 1; channels <= 64; ++channels) {
        const auto mono = converted(Samples(static_cast<size_t>(channels), 1), { 16'000, channels }, 16'000);
        ASSERT_EQ(mono.size(), 1U) << channels;
        EXPECT_LE(mono[0], 1.0001F) << channels;
        EXPECT_GT(mono[0], 0.5F) << channels;
    }
}

TEST(AudioConverter, MixesManyChannelsByTheirMean)
{
    Samples frame(10, 0);
    frame[7] = 1;
    EXPECT_FLOAT_EQ(converted(frame, { 16'000, 10 }, 16'000).at(0), 0.1F);
    EXPECT_NEAR(static_cast<double>(converted(tone(48'000, 10, 4'800), { 48'000, 10 }, 16'000).size()), 1'600, 1);
}

TEST(AudioConverter, CountsEachInputOfADeviceTheSame)
{
    for (int channels = 1; channels <= 8; ++channels)
        for (int speaking = 0; speaking < channels; ++speaking) {
            Samples frame(static_cast<size_t>(channels), 0);
            frame[static_cast<size_t>(speaking)] = 1;
            AudioConverter converter({ 16'000, channels }, 16'000, AudioConverter::Mix::mean);
            Samples mono;
            converter.convert(frame, mono);
            converter.drain(mono);
            ASSERT_EQ(mono.size(), 1U);
            EXPECT_FLOAT_EQ(mono[0], 1.0F / static_cast<float>(channels)) << speaking << " of " << channels;
        }
}

TEST(AudioConverter, GivesNothingForNothing)
{
    for (const int rate : { 8'000, 16'000, 44'100 })
        EXPECT_TRUE(converted({}, { rate, 2 }, 16'000).empty()) << rate;
}

TEST(AudioConverter, ConvertsASingleFrame)
{
    for (const int rate : { 8'000, 44'100, 192'000 })
        EXPECT_LE(converted({ 0.5F }, { rate, 1 }, 16'000).size(), 2U) << rate;
}

TEST(AudioConverter, AppendsToWhatIsThere)
{
    AudioConverter converter({ 16'000, 1 }, 16'000);
    Samples mono { 1 };
    converter.convert(Samples { 2 }, mono);
    converter.drain(mono);
    EXPECT_EQ(mono, (Samples { 1, 2 }));
}

TEST(AudioConverter, RefusesFormatsWithoutSense)
{
    EXPECT_THROW(AudioConverter({ 0, 1 }, 16'000), AudioIOError);
    EXPECT_THROW(AudioConverter({ 16'000, 0 }, 16'000), AudioIOError);
    EXPECT_THROW(AudioConverter({ 16'000, 1 }, -1), AudioIOError);
    EXPECT_THROW(AudioConverter({ -8'000, 2 }, 16'000), AudioIOError);
}

TEST(AudioConverterDeathTest, IsNotUsedAfterItsEnd)
{
    AudioConverter converter({ 8'000, 1 }, 16'000);
    Samples mono;
    converter.drain(mono);
    EXPECT_DEATH(converter.convert(Samples { 1 }, mono), "after its end");
    EXPECT_DEATH(converter.drain(mono), "after its end");
    converter.reset();
    converter.convert(Samples { 1 }, mono);
}

TEST(AudioConverterDeathTest, TakesWholeFramesOnly)
{
    AudioConverter converter({ 8'000, 2 }, 16'000);
    Samples mono;
    EXPECT_DEATH(converter.convert(Samples { 1, 2, 3 }, mono), "part of a frame");
}

} // namespace AudioIO
