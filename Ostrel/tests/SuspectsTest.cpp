// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Suspects.h"

#include "TestConfiguration.h"

#include <gtest/gtest.h>

using namespace Ostrel;

namespace {

// 160 Hz, so encoder frames of 80 samples are half a second and 2.5 s are five of them. Windows are 4000 samples.
Configuration halfSecondFrames()
{
    Configuration configuration = testConfiguration();
    configuration.sampleRate = 160;
    return configuration;
}
const Geometry geometry(halfSecondFrames());

std::vector<float> constant(size_t count, float level)
{
    return std::vector<float>(count, level);
}

Window windowWith(std::vector<int64_t> frames, int64_t start = 0, int64_t stop = 4000)
{
    Window window {
        .start = start, .stop = stop, .validFrames = geometry.validFrames(stop - start), .result = {}, .rescue = {}
    };
    window.result.tokens.assign(frames.size(), 1);
    window.result.ends = frames;
    window.result.frames = std::move(frames);
    return window;
}

// Frames from 0 on, one token at each, but for a gap.
std::vector<int64_t> framesWithGap(Gap gap, int64_t count = 50)
{
    std::vector<int64_t> frames;
    for (int64_t frame = 0; frame < count; ++frame)
        if (frame <= gap.start || frame >= gap.end)
            frames.push_back(frame);
    return frames;
}

} // namespace

TEST(LargestGap, TakesTheFirstOfTheLongest)
{
    const auto gap = [](std::vector<int64_t> frames, int64_t valid) { return largestGap(frames, valid); };
    EXPECT_EQ(gap({ 2, 5, 8 }, 9), (Gap { 2, 5 }));
    EXPECT_EQ(gap({ 4 }, 9), (Gap { 4, 9 }));
    EXPECT_EQ(gap({ 4 }, 8), (Gap { 0, 4 }));
    EXPECT_EQ(gap({}, 8), (Gap { 0, 8 }));
    EXPECT_EQ(gap({ 6, 3, 7 }, 8), (Gap { 0, 6 })); // the furthest frame so far counts
}

TEST(IsSuspect, TakesSoundWithoutTokens)
{
    const auto suspect
        = [](float level) { return isSuspect(windowWith({}), AudioBuffer(constant(4000, level)), geometry); };
    EXPECT_FALSE(suspect(0));
    EXPECT_FALSE(suspect(0.0031F)); // an energy of 0.96e-5
    EXPECT_TRUE(suspect(0.0032F)); // 1.02e-5
}

TEST(IsSuspect, LooksAtEverySixteenthSample)
{
    std::vector<float> samples = constant(4000, 1);
    for (size_t i = 0; i < samples.size(); i += 16)
        samples[i] = 0;
    EXPECT_FALSE(isSuspect(windowWith({}), AudioBuffer(samples), geometry));
    EXPECT_TRUE(isSuspect(windowWith({}, 1), AudioBuffer(samples), geometry));
}

TEST(IsSuspect, TakesAGapAboveTwoAndAHalfSeconds)
{
    const AudioBuffer audio(constant(4000, 0.1F));
    EXPECT_FALSE(isSuspect(windowWith(framesWithGap({ 10, 15 })), audio, geometry));
    EXPECT_TRUE(isSuspect(windowWith(framesWithGap({ 10, 16 })), audio, geometry));
}

TEST(IsSuspect, LetsAQuietGapBe)
{
    const auto suspect = [](float level) {
        std::vector<float> samples = constant(4000, 1);
        std::fill(samples.begin() + 10 * 80, samples.begin() + 30 * 80, level);
        return isSuspect(windowWith(framesWithGap({ 10, 30 })), AudioBuffer(samples), geometry);
    };
    EXPECT_FALSE(suspect(0.3F)); // 0.09 against a quarter of 0.636
    EXPECT_TRUE(suspect(0.5F)); // 0.25 against a quarter of 0.7
}

TEST(IsSuspect, CutsAGapAtTheWindowsEnd)
{
    // The last token stands where the samples end: nothing is left of the gap.
    const Window window = windowWith({ 0, 1, 2, 3, 4, 5, 6 }, 0, 480);
    Window late = window;
    late.validFrames = 50;
    EXPECT_FALSE(isSuspect(late, AudioBuffer(constant(480, 0.1F)), geometry));
}

TEST(IsSuspect, CountsSamplesFromTheStreamsStart)
{
    EXPECT_TRUE(isSuspect(
        windowWith(framesWithGap({ 10, 16 }), 9000, 13000), AudioBuffer(constant(4000, 0.1F), 9000), geometry));
}

TEST(RetryRange, ShortensAnEmptyWindow)
{
    EXPECT_EQ(retryRange(windowWith({}), AudioBuffer(constant(9000, 1)), geometry), (RetryRange { 0, 3720 }));
    EXPECT_EQ(retryRange(windowWith({}, 100, 201), AudioBuffer(constant(201, 1)), geometry), (RetryRange { 100, 193 }));
}

TEST(RetryRange, StartsAtTheQuietestCellAroundTheGapsStart)
{
    // The gap starts at sample 800; it is searched from 640 to 880, in cells of 3.
    std::vector<float> samples = constant(6000, 1);
    std::fill(samples.begin() + 700, samples.begin() + 706, 0.0F);
    const RetryRange range = retryRange(windowWith(framesWithGap({ 10, 30 })), AudioBuffer(samples), geometry);
    EXPECT_EQ(range, (RetryRange { 701, 4701 })); // the first silent cell, 700 to 702
}

TEST(RetryRange, TakesTheFirstOfEquallyQuietCells)
{
    const AudioBuffer audio(constant(4000, 1));
    EXPECT_EQ(retryRange(windowWith(framesWithGap({ 10, 30 })), audio, geometry), (RetryRange { 641, 4000 }));
}

TEST(RetryRange, DoesNotSearchBeforeTheWindow)
{
    const AudioBuffer audio(constant(9000, 1));
    EXPECT_EQ(retryRange(windowWith(framesWithGap({ 0, 30 }), 500, 4500), audio, geometry).start, 501);
}

TEST(RetryRange, StaysAtTheGapWhereNothingCanBeSearched)
{
    Window late = windowWith({ 10 }, 0, 500);
    late.validFrames = 50;
    EXPECT_EQ(retryRange(late, AudioBuffer(constant(500, 1)), geometry), (RetryRange { 499, 500 })); // from 640 to 497
    const Window early = windowWith({ 0 }, 0, 160);
    EXPECT_EQ(retryRange(early, AudioBuffer(constant(5, 1)), geometry), (RetryRange { 0, 5 })); // from 0 to 2: no cell
}

TEST(RetryFailed, AsksForTokensUpToTheEnd)
{
    EXPECT_TRUE(retryFailed({}, 50, geometry));
    EXPECT_FALSE(retryFailed(windowWith({ 3, 45 }).result, 50, geometry));
    EXPECT_TRUE(retryFailed(windowWith({ 3, 44 }).result, 50, geometry));
}
