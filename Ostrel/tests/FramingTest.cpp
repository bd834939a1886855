// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Framing.h"

#include "TestConfiguration.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace Ostrel;
using PlatformSupport::Float16;
using PlatformSupport::toFloat;
using PlatformSupport::toFloat16;

namespace {

// Rows as the padded window that they stand for; starts from rubbish, to see that all of it is overwritten.
std::vector<float> padded(const std::vector<float>& window, const Configuration& c)
{
    std::vector<Float16> rows(static_cast<size_t>(c.hopLength * c.nRows), toFloat16(7));
    frame(window, c, rows);
    std::vector<float> result;
    for (int64_t i = 0; i < c.hopLength * c.nRows; ++i)
        result.push_back(toFloat(rows[static_cast<size_t>(i % c.hopLength * c.nRows + i / c.hopLength)]));
    return result;
}

std::vector<float> noise(int64_t count)
{
    std::vector<float> samples;
    for (int64_t i = 0; i < count; ++i)
        samples.push_back(static_cast<float>(i * 7919 % 2003) / 2003.0F - 0.4F);
    return samples;
}

Configuration smallConfiguration()
{
    Configuration c = testConfiguration();
    c.hopLength = 4;
    c.nRows = 8; // room for 32 samples
    c.nFFT = 7; // padding of 3
    c.nSamples = 20;
    c.nPaddedSamples = 30;
    return c;
}

} // namespace

TEST(Frame, TransposesHopsAndPositions)
{
    Configuration c = smallConfiguration();
    c.nFFT = 1; // no padding
    std::vector<Float16> rows(32);
    frame(std::vector<float> { 1, 2, 3, 4, 5, 6 }, c, rows);
    EXPECT_EQ(toFloat(rows[0]), 1); // position 0 of hop 0
    EXPECT_EQ(toFloat(rows[8]), 2); // position 1 of hop 0
    EXPECT_EQ(toFloat(rows[1]), 5); // position 0 of hop 1
    EXPECT_EQ(toFloat(rows[9]), 6);
}

TEST(Frame, FollowsAFullWindowWithADecayingTail)
{
    const Configuration c = smallConfiguration();
    const std::vector<float> window = noise(20);
    const std::vector<float> signal = padded(window, c);
    for (size_t i = 0; i < signal.size(); ++i) {
        float expected = 0;
        if (i >= 3 && i < 23)
            expected = window[i - 3];
        else if (i >= 23 && i < 30)
            expected = window.back() * std::pow(0.5F, static_cast<float>(i - 22));
        EXPECT_EQ(signal[i], toFloat(toFloat16(expected))) << i;
    }
}

TEST(Frame, GivesAShortWindowNoTail)
{
    const std::vector<float> window = noise(19);
    const std::vector<float> signal = padded(window, smallConfiguration());
    for (size_t i = 0; i < signal.size(); ++i)
        EXPECT_EQ(signal[i], i >= 3 && i < 22 ? toFloat(toFloat16(window[i - 3])) : 0.0F) << i;
}

TEST(Frame, GivesAFullWindowThatEndsInZeroNoTail)
{
    std::vector<float> window = noise(20);
    window.back() = 0;
    const std::vector<float> signal = padded(window, smallConfiguration());
    for (size_t i = 22; i < signal.size(); ++i)
        EXPECT_EQ(signal[i], 0) << i;
}

TEST(Frame, LaysAnEmptyWindowOutAsZeros)
{
    EXPECT_EQ(padded({}, smallConfiguration()), std::vector<float>(32, 0.0F));
}

TEST(Frame, CutsAtTheRows)
{
    Configuration c = smallConfiguration();
    c.nRows = 4; // room for 16 samples, 13 after the padding
    const std::vector<float> window = noise(20);
    const std::vector<float> signal = padded(window, c);
    ASSERT_EQ(signal.size(), 16U);
    EXPECT_EQ(signal.back(), toFloat(toFloat16(window[12])));
}

TEST(FrameDeathTest, StopsAtAnImpossibleGeometry)
{
    Configuration c = smallConfiguration();
    c.nFFT = 100;
    EXPECT_DEATH(padded({}, c), "shorter than its padding");
    EXPECT_DEATH(padded(noise(21), smallConfiguration()), "longer than the model's");
}
