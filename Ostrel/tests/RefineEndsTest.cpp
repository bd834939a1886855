// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RefineEnds.h"

#include <gtest/gtest.h>

using namespace Ostrel;

namespace {

constexpr double sampleRate = 100;

// A second of audio, in stretches of 0.1 s: the given levels, then silence.
std::vector<float> stretches(const std::vector<float>& levels)
{
    std::vector<float> samples(100, 0.0F);
    for (size_t i = 0; i < levels.size(); ++i)
        std::fill_n(samples.begin() + static_cast<ptrdiff_t>(10 * i), 10, levels[i]);
    return samples;
}

Word refined(const Word& word, const std::vector<float>& samples, double windowStart = 0, int64_t offset = 0)
{
    return refineEnds({ word }, { samples, offset }, windowStart, sampleRate, 0.1).front();
}

} // namespace

TEST(RefineEnds, MovesAnEndToWhereTheSoundEnds)
{
    const std::vector<float> samples = stretches({ 1, 1, 1, 0.1F });
    EXPECT_EQ(refined({ "a", 0, 0.9 }, samples), (Word { "a", 0, 0.3 }));
    EXPECT_EQ(refined({ "a", 0.1, 0.9 }, samples).start, 0.1);
}

TEST(RefineEnds, CountsATwentiethOfThePeakAsSound)
{
    EXPECT_EQ(refined({ "a", 0, 0.9 }, stretches({ 1, 1, 0.3F })).end, 0.3); // an energy of 0.09
    EXPECT_EQ(refined({ "a", 0, 0.9 }, stretches({ 1, 1, 0.2F })).end, 0.2); // an energy of 0.04
}

TEST(RefineEnds, OnlyMovesEndsEarlier)
{
    EXPECT_EQ(refined({ "a", 0, 0.25 }, stretches({ 1, 1, 1, 1 })).end, 0.25);
}

TEST(RefineEnds, CountsTimesFromTheWindowsStart)
{
    EXPECT_EQ(refined({ "a", 8, 8.875 }, stretches({ 1, 1, 1 }), 8).end, 8.3);
}

TEST(RefineEnds, LeavesASilentWordAlone)
{
    EXPECT_EQ(refined({ "a", 0.5, 0.9 }, stretches({ 1, 1 })), (Word { "a", 0.5, 0.9 }));
}

TEST(RefineEnds, LeavesAWordOutsideTheSliceAlone)
{
    const std::vector<float> samples = stretches({ 1 });
    EXPECT_EQ(refined({ "a", 0.5, 1.01 }, samples).end, 1.01);
    EXPECT_EQ(refined({ "a", -0.5, 0.5 }, samples).end, 0.5);
    EXPECT_EQ(refined({ "a", 0.5, 0.5 }, samples).end, 0.5);
    EXPECT_EQ(refined({ "a", 0.5, 1e300 }, samples).end, 1e300);
}

TEST(RefineEnds, LooksFurtherPastASliceThatLiesInsideItsBuffer)
{
    EXPECT_EQ(refined({ "a", 0, 1.25 }, stretches({ 1, 1 }), 0, 25).end, 0.2);
    EXPECT_EQ(refined({ "a", 0, 1.27 }, stretches({ 1, 1 }), 0, 25).end, 1.27);
}

TEST(RefineEnds, GivesEverythingBackWithoutSamplesOrWords)
{
    EXPECT_EQ(refined({ "a", 0, 1 }, {}), (Word { "a", 0, 1 }));
    EXPECT_TRUE(refineEnds({}, { stretches({ 1 }), 0 }, 0, sampleRate, 0.1).empty());
}

TEST(RefineEnds, UsesStretchesOfAtLeastOneSample)
{
    std::vector<float> samples(10, 0.0F);
    samples[0] = samples[1] = 1;
    EXPECT_EQ(refineEnds({ { "a", 0, 0.1 } }, { samples, 0 }, 0, sampleRate, 0.001).front().end, 0.02);
}
