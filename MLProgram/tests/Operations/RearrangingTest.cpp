// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

TEST(Rearranging, TransposesByPermutation)
{
    EXPECT_THAT(evaluate("transpose", { { "x", counting({ 2, 3 }) }, { "perm", integers({ 1, 0 }) } }),
        equals(reals({ 3, 2 }, { 0, 3, 1, 4, 2, 5 })));
    EXPECT_THAT(evaluate("transpose", { { "x", counting({ 2, 1, 3 }) }, { "perm", integers({ -1, 0, 1 }) } }),
        equals(reals({ 3, 2, 1 }, { 0, 3, 1, 4, 2, 5 })));
    EXPECT_THAT(evaluate("transpose", { { "x", counting({ 0, 3 }) }, { "perm", integers({ 1, 0 }) } }),
        equals(reals({ 3, 0 }, {})));
    EXPECT_THAT(evaluate("transpose", { { "x", 7 }, { "perm", integers(std::vector<int32_t> {}) } }),
        equals(integers({}, { 7 })));
}

TEST(Rearranging, RefusesWhatIsNoPermutation)
{
    const auto words = [](std::vector<int32_t> order) {
        return refusal("transpose", { { "x", counting({ 2, 3 }) }, { "perm", integers(order) } });
    };
    EXPECT_THAT(words({ 0 }), HasSubstr("permutation"));
    EXPECT_THAT(words({ 0, 0 }), HasSubstr("twice"));
    EXPECT_THAT(words({ 0, 2 }), HasSubstr("axis 2"));
    EXPECT_THAT(words({ 0, 1, 0 }), HasSubstr("permutation"));
}

TEST(Rearranging, MovesChannelsToPixelsAndBack)
{
    const Tensor channels = counting({ 1, 4, 1, 2 });
    const Tensor pixels = reals({ 1, 1, 2, 4 }, { 0, 2, 1, 3, 4, 6, 5, 7 });
    EXPECT_THAT(evaluate("pixel_shuffle", { { "x", channels }, { "upscale_factor", 2 } }), equals(pixels));
    EXPECT_THAT(evaluate("pixel_unshuffle", { { "x", pixels }, { "downscale_factor", 2 } }), equals(channels));
    EXPECT_THAT(evaluate("depth_to_space", { { "x", channels }, { "block_size", 2 } }), equals(pixels));
    EXPECT_THAT(evaluate("space_to_depth", { { "x", pixels }, { "block_size", 2 } }), equals(channels));
}

TEST(Rearranging, DepthAndPixelsDifferWithSeveralChannels)
{
    const Tensor x = counting({ 1, 8, 1, 1 });
    EXPECT_THAT(evaluate("pixel_shuffle", { { "x", x }, { "upscale_factor", 2 } }),
        equals(reals({ 1, 2, 2, 2 }, { 0, 1, 2, 3, 4, 5, 6, 7 })));
    const Tensor spread = reals({ 1, 2, 2, 2 }, { 0, 2, 4, 6, 1, 3, 5, 7 });
    EXPECT_THAT(evaluate("depth_to_space", { { "x", x }, { "block_size", 2 } }), equals(spread));
    EXPECT_THAT(evaluate("space_to_depth", { { "x", spread }, { "block_size", 2 } }), equals(x));
}

TEST(Rearranging, RefusesFactorsThatDoNotDivide)
{
    const Tensor x = counting({ 1, 2, 3, 3 });
    EXPECT_THAT(refusal("pixel_shuffle", { { "x", x }, { "upscale_factor", 2 } }), HasSubstr("multiple"));
    EXPECT_THAT(refusal("pixel_shuffle", { { "x", x }, { "upscale_factor", 0 } }), HasSubstr("at least 1"));
    EXPECT_THAT(refusal("pixel_unshuffle", { { "x", x }, { "downscale_factor", 2 } }), HasSubstr("multiples"));
    EXPECT_THAT(refusal("depth_to_space", { { "x", x }, { "block_size", 2 } }), HasSubstr("multiple"));
    EXPECT_THAT(refusal("space_to_depth", { { "x", counting({ 3, 3 }) }, { "block_size", 3 } }), HasSubstr("rank 2"));
    EXPECT_THAT(refusal("space_to_depth", { { "x", counting({ 1, 1, 0, 0 }) }, { "block_size", INT32_MAX } }),
        HasSubstr("too large"));
}

TEST(Rearranging, MovesSpaceToTheBatchAndBack)
{
    const Tensor x = counting({ 1, 1, 2, 4 });
    const Tensor block = integers({ 2, 2 });
    const Tensor none = integers({ 2, 2 }, { 0, 0, 0, 0 });
    const Tensor batch = reals({ 4, 1, 1, 2 }, { 0, 2, 1, 3, 4, 6, 5, 7 });
    EXPECT_THAT(
        evaluate("space_to_batch", { { "x", x }, { "block_shape", block }, { "paddings", none } }), equals(batch));
    EXPECT_THAT(evaluate("batch_to_space", { { "x", batch }, { "block_shape", block }, { "crops", none } }), equals(x));
}

TEST(Rearranging, PadsAndCropsAroundTheBatch)
{
    const Tensor x = reals({ 1, 1, 1, 2 }, { 5, 6 });
    const Tensor block = integers({ 1, 2 });
    const Tensor margins = integers({ 2, 2 }, { 0, 0, 1, 1 });
    const Tensor batch = reals({ 2, 1, 1, 2 }, { 0, 6, 5, 0 });
    EXPECT_THAT(
        evaluate("space_to_batch", { { "x", x }, { "block_shape", block }, { "paddings", margins } }), equals(batch));
    EXPECT_THAT(
        evaluate("batch_to_space", { { "x", batch }, { "block_shape", block }, { "crops", margins } }), equals(x));
    EXPECT_THAT(
        refusal("space_to_batch", { { "x", x }, { "block_shape", integers({ 2, 2 }) }, { "paddings", margins } }),
        HasSubstr("multiples"));
    EXPECT_THAT(refusal("batch_to_space",
                    { { "x", batch }, { "block_shape", block }, { "crops", integers({ 2, 2 }, { 0, 0, 3, 3 }) } }),
        HasSubstr("negative"));
    EXPECT_THAT(
        refusal("batch_to_space", { { "x", x }, { "block_shape", block }, { "crops", margins } }), HasSubstr("batch"));
}
