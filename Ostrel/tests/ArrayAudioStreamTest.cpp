// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AudioBuffer.h"

#include <gtest/gtest.h>

#include <numeric>

using Ostrel::ArrayAudioStream;
using Ostrel::AudioBuffer;

namespace {

std::vector<float> ramp(size_t count)
{
    std::vector<float> samples(count);
    std::iota(samples.begin(), samples.end(), 0.0F);
    return samples;
}

} // namespace

TEST(ArrayAudioStream, AppendsWhatIsAskedUntilTheEnd)
{
    ArrayAudioStream stream(ramp(5));
    std::vector<float> samples { -1 };
    EXPECT_EQ(stream.totalSamples(), 5);
    EXPECT_EQ(stream.read(3, samples), 3);
    EXPECT_EQ(stream.read(3, samples), 2);
    EXPECT_EQ(stream.read(3, samples), 0);
    EXPECT_EQ(samples, (std::vector<float> { -1, 0, 1, 2, 3, 4 }));
    EXPECT_EQ(stream.totalSamples(), 5);
}

TEST(ArrayAudioStream, DoesNotMoveWhenNothingIsAsked)
{
    ArrayAudioStream stream(ramp(2));
    std::vector<float> samples;
    EXPECT_EQ(stream.read(0, samples), 0);
    EXPECT_EQ(stream.read(-1, samples), 0);
    EXPECT_EQ(stream.read(9, samples), 2);
}

TEST(AudioBuffer, ReadsUntilItHoldsEnough)
{
    ArrayAudioStream stream(ramp(100));
    AudioBuffer audio;
    audio.fill(stream, 10, 4);
    EXPECT_EQ(audio.end(), 10);
    audio.fill(stream, 11, 4);
    EXPECT_EQ(audio.end(), 14);
    audio.fill(stream, 14, 4);
    EXPECT_EQ(audio.end(), 14);
    audio.fill(stream, 1000, 4);
    EXPECT_EQ(audio.end(), 100);
}

TEST(AudioBuffer, CountsSamplesFromTheStreamsStart)
{
    ArrayAudioStream stream(ramp(20));
    AudioBuffer audio;
    audio.fill(stream, 12, 1);
    audio.release(5);
    audio.release(3);
    audio.fill(stream, 15, 1);
    EXPECT_EQ(audio.base(), 5);
    EXPECT_EQ(audio.end(), 15);
    EXPECT_EQ(audio.range(5, 6).front(), 5);
    EXPECT_EQ(audio.range(14, 15).front(), 14);
    EXPECT_TRUE(audio.range(15, 15).empty());
}

TEST(AudioBufferDeathTest, RefusesSamplesThatAreNotHeld)
{
    const AudioBuffer audio(ramp(4), 10);
    EXPECT_DEATH(audio.range(9, 11), "audio outside what is held");
    EXPECT_DEATH(audio.range(13, 15), "audio outside what is held");
}
