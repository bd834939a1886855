// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Chunking.h"

#include "TestConfiguration.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace Ostrel;

namespace {

// 100 Hz, so cells of 2 samples; windows of 4000 samples, and a search of 1 s: cells from 3900 to 3998.
const Geometry geometry(testConfiguration());
constexpr int64_t windowEnd = 4000;
constexpr double searchSeconds = 1.0;

// Samples of which each cell in the search range has the given energy, by its index.
AudioBuffer audioOf(const std::vector<float>& levels)
{
    std::vector<float> samples(4000, 1.0F);
    for (size_t cell = 0; cell < levels.size(); ++cell)
        samples[3900 + 2 * cell] = samples[3901 + 2 * cell] = std::sqrt(levels[cell]);
    return AudioBuffer(std::move(samples));
}

int64_t centreOf(int64_t cell)
{
    return 3900 + 2 * cell + 1;
}

int64_t boundary(const AudioBuffer& audio)
{
    return nextBoundary(0, audio, geometry, searchSeconds);
}

} // namespace

TEST(NextBoundary, CutsAtTheQuietestCell)
{
    std::vector<float> levels(50, 1.0F);
    levels[20] = 0.01F;
    EXPECT_EQ(boundary(audioOf(levels)), centreOf(20));
}

TEST(NextBoundary, TakesTheLastCellOfPureSilence)
{
    EXPECT_EQ(boundary(audioOf(std::vector<float>(50, 0.0F))), centreOf(49));
}

TEST(NextBoundary, TakesNearSilenceAsSilence)
{
    // 1.5e-9 is kept beside a cell of no energy at all, but loses to it by score.
    std::vector<float> levels(50, 1.5e-9F);
    levels[3] = 0;
    EXPECT_EQ(boundary(audioOf(levels)), centreOf(3));
}

TEST(NextBoundary, PrefersALouderCellNearTheEndWithinTwiceTheMinimum)
{
    std::vector<float> levels(50, 1.0F);
    levels[0] = 0.01F; // weighed almost twice
    levels[49] = 0.015F;
    EXPECT_EQ(boundary(audioOf(levels)), centreOf(49));
    levels[49] = 0.03F;
    EXPECT_EQ(boundary(audioOf(levels)), centreOf(0));
}

TEST(NextBoundary, GivesTiesToTheLaterCell)
{
    std::vector<float> levels(50, 1.0F);
    levels[10] = levels[30] = 0.01F;
    EXPECT_EQ(boundary(audioOf(levels)), centreOf(30));
}

TEST(NextBoundary, StartsBackToBackWithoutASearch)
{
    EXPECT_EQ(nextBoundary(0, audioOf({}), geometry, 0), windowEnd);
    EXPECT_EQ(nextBoundary(0, audioOf({}), geometry, 0.019), windowEnd);
    EXPECT_EQ(nextBoundary(0, audioOf({}), geometry, -3), windowEnd);
}

TEST(NextBoundary, LeavesAPartialCellUnused)
{
    // 3 samples: one cell at 3997 and 3998, whatever 3999 is.
    EXPECT_EQ(nextBoundary(0, audioOf({}), geometry, 0.03), 3998);
}

TEST(NextBoundary, CountsFromTheStreamsStart)
{
    std::vector<float> samples(200, 1.0F);
    samples[60] = samples[61] = 0;
    // The window starts at 1000 and ends at 5000; only its last 100 samples are held.
    EXPECT_EQ(nextBoundary(1000, AudioBuffer(samples, 4900), geometry, searchSeconds), 4961);
}

TEST(NextBoundary, KeepsAllCellsWhenEnergiesAreNoNumbers)
{
    const std::vector<float> levels(50, std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(boundary(audioOf(levels)), centreOf(0));
}

TEST(NextBoundaryDeathTest, StopsWhenTheSearchReachesWhatIsNotHeld)
{
    EXPECT_DEATH(nextBoundary(0, audioOf({}), geometry, 41), "audio outside what is held");
    EXPECT_DEATH(nextBoundary(0, audioOf({}), geometry, std::numeric_limits<double>::quiet_NaN()), "no length");
    EXPECT_DEATH(nextBoundary(0, audioOf({}), geometry, 1e300), "no length");
}
