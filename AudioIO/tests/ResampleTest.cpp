// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <AudioIO/Resample.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace AudioIO::Resample {

using testing::ElementsAre;
using testing::IsEmpty;
using Samples = std::vector<float>;
using Channels = std::vector<Samples>;

TEST(Mixdown, TakesTheMeanOfEachFrame)
{
    EXPECT_THAT(mixdownMono(Samples { 1, 0, -1, 0.5F }, 2), ElementsAre(0.5F, -0.25F));
    EXPECT_THAT(mixdownMono(Samples { 3, 6, 9 }, 3), ElementsAre(18 * (1.0F / 3)));
}

TEST(Mixdown, LeavesMonoAsItIs)
{
    const Samples samples { 1, 2, 3 };
    EXPECT_EQ(mixdownMono(samples, 1), samples);
    EXPECT_EQ(mixdownMono(samples, 0), samples);
    EXPECT_EQ(mixdownMono(samples, -2), samples);
}

TEST(Mixdown, DropsAPartialLastFrame)
{
    EXPECT_THAT(mixdownMono(Samples { 1, 1, 7 }, 2), ElementsAre(1));
    EXPECT_THAT(mixdownMono(Samples { 1 }, 2), IsEmpty());
    EXPECT_THAT(mixdownMono(Samples {}, 2), IsEmpty());
}

TEST(LinearResampling, HoldsTheLastSampleAtTheTail)
{
    EXPECT_THAT(linear(Samples { 0, 1 }, 1, 2), ElementsAre(0, 0.5F, 1, 1));
}

TEST(LinearResampling, PicksEverySecondSampleAtHalfTheRate)
{
    EXPECT_THAT(linear(Samples { 0, 1, 2, 3, 4 }, 2, 1), ElementsAre(0, 2, 4)); // 2.5 rounds away from zero
}

TEST(LinearResampling, LiesBetweenNeighbours)
{
    EXPECT_THAT(linear(Samples { 0, 3, 6, 9 }, 4, 3), ElementsAre(0, 4, 8));
}

TEST(LinearResampling, ReturnsWhatItCannotResampleUnchanged)
{
    const Samples samples { 1, 2, 3 };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(linear(samples, 0, 16'000), samples);
    EXPECT_EQ(linear(samples, 16'000, 0), samples);
    EXPECT_EQ(linear(samples, -8'000, 16'000), samples);
    EXPECT_EQ(linear(samples, 8'000, -16'000), samples);
    EXPECT_EQ(linear(samples, nan, 16'000), samples);
    EXPECT_EQ(linear(samples, 16'000, 16'000), samples);
    EXPECT_THAT(linear(Samples { 5 }, 8'000, 16'000), ElementsAre(5));
    EXPECT_THAT(linear(Samples {}, 8'000, 16'000), IsEmpty());
}

TEST(LinearResampling, IsEmptyWhenLessThanHalfASampleIsLeft)
{
    EXPECT_THAT(linear(Samples { 1, 2 }, 100, 10), IsEmpty());
    EXPECT_THAT(linear(Samples { 1, 2 }, 100, 25), ElementsAre(1));
}

TEST(Deinterleave, GivesOneArrayForEachChannel)
{
    EXPECT_EQ(deinterleave(Samples { 1, 2, 3, 4, 5 }, 2), (Channels { { 1, 3 }, { 2, 4 } }));
    EXPECT_EQ(deinterleave(Samples { 1, 2 }, 1), (Channels { { 1, 2 } }));
    EXPECT_EQ(deinterleave(Samples { 1, 2 }, 0), (Channels { { 1, 2 } }));
    EXPECT_EQ(deinterleave(Samples { 1, 2 }, 3), (Channels { {}, {}, {} }));
}

TEST(Interleave, CutsToTheShortestChannel)
{
    EXPECT_THAT(interleave(Channels { { 1, 3, 5 }, { 2, 4 } }), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(interleave(Channels { { 1, 3 }, {} }), IsEmpty());
    EXPECT_THAT(interleave(Channels { { 1, 2, 3 } }), ElementsAre(1, 2, 3));
    EXPECT_THAT(interleave(Channels {}), IsEmpty());
}

TEST(WholeBuffers, AreMixedThenResampled)
{
    const PCM pcm { .samples = { 0, 0, 2, 0 }, .sampleRate = 1, .channels = 2 };
    EXPECT_THAT(toMono(pcm, 2), ElementsAre(0, 0.5F, 1, 1));
    EXPECT_EQ(toChannels(pcm, 2), (Channels { { 0, 1, 2, 2 }, { 0, 0, 0, 0 } }));
    EXPECT_EQ(toChannels(pcm, 1), (Channels { { 0, 2 }, { 0, 0 } }));
}

} // namespace AudioIO::Resample
