// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

TEST(Normalisation, LayerNormStandardisesAlongItsAxes)
{
    const Tensor x = reals({ 2, 2 }, { 1, 3, 10, 30 });
    const auto norm = [&](Arguments more) {
        more.insert(more.end(), { { "x", x }, { "epsilon", 0.0f } });
        return evaluate("layer_norm", more);
    };
    EXPECT_THAT(norm({ { "axes", integers({ -1 }) } }), isNear(reals({ 2, 2 }, { -1, 1, -1, 1 })));
    EXPECT_THAT(norm({ { "axes", integers({ 0 }) } }), isNear(reals({ 2, 2 }, { -1, -1, 1, 1 })));
    EXPECT_THAT(norm({ { "axes", integers({ 1 }) }, { "gamma", reals({ 2, 3 }) }, { "beta", reals({ 10, 20 }) } }),
        isNear(reals({ 2, 2 }, { 8, 23, 8, 23 })));
    // All axes: mean 11, variance (100 + 64 + 1 + 361) / 4 = 131.5.
    EXPECT_THAT(norm({}), isNear(reals({ 2, 2 }, { -0.8720412f, -0.6976330f, -0.0872041f, 1.6568783f })));
}

TEST(Normalisation, LayerNormAddsItsEpsilonToTheVariance)
{
    EXPECT_THAT(
        evaluate("layer_norm", { { "x", reals({ 1, 3 }) }, { "epsilon", 3.0f } }), isNear(reals({ -0.5f, 0.5f })));
    EXPECT_THAT(evaluate("layer_norm", { { "x", reals({ 2, 2 }) } }), equals(reals({ 0, 0 })));
    EXPECT_THAT(
        evaluate("layer_norm", { { "x", reals({ 0, 0.002f }) } }), isNear(reals({ -0.30151135f, 0.30151135f })));
}

TEST(Normalisation, LayerNormParametersFollowSeveralAxes)
{
    const Tensor x = reals({ 1, 2, 1, 2 }, { -1, 1, -1, 1 });
    EXPECT_THAT(evaluate("layer_norm",
                    { { "x", x }, { "axes", integers({ 1, 3 }) }, { "epsilon", 0.0f },
                        { "gamma", reals({ 2, 2 }, { 1, 2, 3, 4 }) } }),
        isNear(reals({ 1, 2, 1, 2 }, { -1, 2, -3, 4 })));
    EXPECT_THAT(refusal("layer_norm", { { "x", x }, { "axes", integers({ 1, 3 }) }, { "gamma", counting({ 4 }) } }),
        HasSubstr("\"gamma\""));
    EXPECT_THAT(refusal("layer_norm", { { "x", x }, { "axes", integers({ 4 }) } }), HasSubstr("axis 4"));
    EXPECT_THAT(evaluate("layer_norm", { { "x", counting({ 0, 2 }) }, { "axes", integers({ 1 }) } }),
        equals(reals({ 0, 2 }, {})));
}

TEST(Normalisation, BatchNormUsesGivenStatisticsForEachChannel)
{
    const Arguments plain { { "x", reals({ 1, 2, 2 }, { 1, 2, 30, 40 }) }, { "mean", reals({ 1, 10 }) },
        { "variance", reals({ 4, 25 }) }, { "epsilon", 0.0f } };
    EXPECT_THAT(evaluate("batch_norm", plain), isNear(reals({ 1, 2, 2 }, { 0, 0.5f, 4, 6 })));
    Arguments scaled = plain;
    scaled.insert(scaled.end(), { { "gamma", reals({ 2, 3 }) }, { "beta", reals({ 5, 6 }) } });
    EXPECT_THAT(evaluate("batch_norm", scaled), isNear(reals({ 1, 2, 2 }, { 5, 6, 18, 24 })));
    EXPECT_THAT(evaluate("batch_norm",
                    { { "x", reals({ 1, 1 }, { 1 }) }, { "mean", reals({ 0 }) }, { "variance", reals({ 0 }) } }),
        isNear(reals({ 1, 1 }, { 316.22777f })));
}

TEST(Normalisation, BatchNormRefusesOtherChannels)
{
    const Tensor x = counting({ 1, 2, 2 });
    EXPECT_THAT(refusal("batch_norm", { { "x", x }, { "mean", reals({ 1 }) }, { "variance", reals({ 1, 2 }) } }),
        HasSubstr("\"mean\""));
    EXPECT_THAT(
        refusal("batch_norm", { { "x", x }, { "mean", reals({ 1, 2 }) } }), HasSubstr("\"variance\" is missing"));
    EXPECT_THAT(refusal("batch_norm", { { "x", 1.0f } }), HasSubstr("rank 0"));
}

TEST(Normalisation, InstanceNormStandardisesEachChannel)
{
    const Tensor x = reals({ 2, 2, 2 }, { 0, 2, 0, 4, 1, 3, 5, 9 });
    EXPECT_THAT(evaluate("instance_norm", { { "x", x }, { "epsilon", 0.0f } }),
        isNear(reals({ 2, 2, 2 }, { -1, 1, -1, 1, -1, 1, -1, 1 })));
    EXPECT_THAT(evaluate("instance_norm",
                    { { "x", x }, { "epsilon", 0.0f }, { "gamma", reals({ 1, 2 }) }, { "beta", reals({ 0, 10 }) } }),
        isNear(reals({ 2, 2, 2 }, { -1, 1, 8, 12, -1, 1, 8, 12 })));
    EXPECT_THAT(refusal("instance_norm", { { "x", counting({ 2, 2 }) } }), HasSubstr("rank 2"));
}

TEST(Normalisation, L2NormDividesByTheLengthOverThreeDimensions)
{
    EXPECT_THAT(evaluate("l2_norm", { { "x", reals({ 2, 1, 1, 2 }, { 3, 4, 6, 8 }) } }),
        isNear(reals({ 2, 1, 1, 2 }, { 0.6f, 0.8f, 0.6f, 0.8f })));
    EXPECT_THAT(evaluate("l2_norm", { { "x", reals({ 1, 1, 1 }, { 4 }) }, { "epsilon", 9.0f } }),
        isNear(reals({ 1, 1, 1 }, { 0.8f })));
    EXPECT_THAT(refusal("l2_norm", { { "x", counting({ 2, 2 }) } }), HasSubstr("rank 2"));
}

TEST(Normalisation, LocalResponseNormLooksAtNeighbouringChannels)
{
    const Tensor x = reals({ 1, 3, 1 }, { 1, 2, 3 });
    // Windows of 3 channels: sums of squares 5, 14, 13.
    EXPECT_THAT(evaluate("local_response_norm",
                    { { "x", x }, { "size", 3 }, { "alpha", 3.0f }, { "beta", 1.0f }, { "k", 1.0f } }),
        isNear(reals({ 1, 3, 1 }, { 1.0f / 6, 2.0f / 15, 3.0f / 14 })));
    // Windows of 2 channels reach back: sums of squares 1, 5, 13.
    EXPECT_THAT(evaluate("local_response_norm",
                    { { "x", x }, { "size", 2 }, { "alpha", 2.0f }, { "beta", 1.0f }, { "k", 0.0f } }),
        isNear(reals({ 1, 3, 1 }, { 1, 2.0f / 5, 3.0f / 13 })));
    EXPECT_THAT(evaluate("local_response_norm", { { "x", reals({ 1, 1, 1 }, { 100 }) }, { "size", 1 } }),
        isNear(reals({ 1, 1, 1 }, { 59.460356f })));
    EXPECT_THAT(refusal("local_response_norm", { { "x", x }, { "size", 0 } }), HasSubstr("at least 1"));
}
