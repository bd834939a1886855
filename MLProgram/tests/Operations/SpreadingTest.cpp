// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Arguments padding(Tensor x, std::vector<int32_t> pad, Arguments more = {})
{
    more.insert(more.end(), { { "x", std::move(x) }, { "pad", integers(pad) } });
    return more;
}

} // namespace

TEST(Spreading, PadsTheLastDimensions)
{
    EXPECT_THAT(evaluate("pad", padding(counting({ 2, 2 }), { 1, 2 })),
        equals(reals({ 2, 5 }, { 0, 0, 1, 0, 0, 0, 2, 3, 0, 0 })));
    EXPECT_THAT(evaluate("pad", padding(counting({ 1, 2 }), { 1, 0, 0, 1 }, { { "constant_val", 7.0f } })),
        equals(reals({ 2, 3 }, { 7, 7, 7, 0, 1, 7 })));
    EXPECT_THAT(
        evaluate("pad", padding(integers({ 5 }), { 1, 0 }, { { "constant_val", -1 } })), equals(integers({ -1, 5 })));
    EXPECT_THAT(evaluate("pad", padding(booleans({ 1 }), { 0, 1 })), equals(booleans({ 1, 0 })));
    EXPECT_THAT(evaluate("pad", padding(counting({ 0 }), { 1, 1 })), equals(reals({ 0, 0 })));
}

TEST(Spreading, PadsByReflectionOrReplication)
{
    EXPECT_THAT(evaluate("pad", padding(counting({ 4 }), { 3, 2 }, { { "mode", "reflect" } })),
        equals(reals({ 3, 2, 1, 0, 1, 2, 3, 2, 1 })));
    EXPECT_THAT(evaluate("pad", padding(counting({ 2 }), { 2, 1 }, { { "mode", "replicate" } })),
        equals(reals({ 0, 0, 0, 1, 1 })));
    EXPECT_THAT(evaluate("pad", padding(counting({ 2, 2 }), { 1, 0, 0, 1 }, { { "mode", "reflect" } })),
        equals(reals({ 3, 3 }, { 2, 3, 2, 0, 1, 0, 2, 3, 2 })));
}

TEST(Spreading, RefusesUnusablePadding)
{
    EXPECT_THAT(refusal("pad", padding(counting({ 2 }), { -1, 0 })), HasSubstr("negative"));
    EXPECT_THAT(refusal("pad", padding(counting({ 2 }), { 1 })), HasSubstr("two numbers"));
    EXPECT_THAT(refusal("pad", padding(counting({ 2 }), { 0, 0, 0, 0 })), HasSubstr("two numbers"));
    EXPECT_THAT(refusal("pad", padding(counting({ 2 }), { 0, 2 }, { { "mode", "reflect" } })), HasSubstr("too short"));
    EXPECT_THAT(refusal("pad", padding(counting({ 0 }), { 0, 1 }, { { "mode", "reflect" } })), HasSubstr("too short"));
    EXPECT_THAT(refusal("pad", padding(counting({ 0 }), { 0, 1 }, { { "mode", "replicate" } })), HasSubstr("no edge"));
    EXPECT_THAT(refusal("pad", padding(counting({ 2 }), { 0, 1 }, { { "mode", "wrap" } })), HasSubstr("mode"));
    EXPECT_THAT(refusal("pad", padding(counting({ 2 }), { INT32_MAX, INT32_MAX })), HasSubstr("too large"));
}

TEST(Spreading, TilesByRepetition)
{
    const auto tiled = [](std::vector<int32_t> times) {
        return Arguments { { "x", counting({ 1, 2 }) }, { "reps", integers(times) } };
    };
    EXPECT_THAT(evaluate("tile", tiled({ 2, 2 })), equals(reals({ 2, 4 }, { 0, 1, 0, 1, 0, 1, 0, 1 })));
    EXPECT_THAT(evaluate("tile", tiled({ 1, 0 })), equals(reals({ 1, 0 }, {})));
    EXPECT_THAT(refusal("tile", tiled({ 2 })), HasSubstr("each dimension"));
    EXPECT_THAT(refusal("tile", tiled({ -1, 1 })), HasSubstr("negative"));
    EXPECT_THAT(refusal("tile", tiled({ 65536, 65536 })), HasSubstr("too large"));
}

TEST(Spreading, ReversesAxes)
{
    const Tensor x = counting({ 2, 3 });
    EXPECT_THAT(evaluate("reverse", { { "x", x } }), equals(reals({ 2, 3 }, { 5, 4, 3, 2, 1, 0 })));
    EXPECT_THAT(evaluate("reverse", { { "x", x }, { "axes", integers({ -1 }) } }),
        equals(reals({ 2, 3 }, { 2, 1, 0, 5, 4, 3 })));
    EXPECT_THAT(evaluate("reverse", { { "x", counting({ 0, 3 }) } }), equals(reals({ 0, 3 }, {})));
    EXPECT_THAT(refusal("reverse", { { "x", x }, { "axes", integers({ 2 }) } }), HasSubstr("axis 2"));
}

TEST(Spreading, ReversesTheBeginningOfEachSequence)
{
    const auto sequences = [](std::vector<int32_t> lengths, int sequenceAxis, int batchAxis) {
        return Arguments { { "x", counting({ 2, 3 }) }, { "lengths", integers(lengths) }, { "seq_axis", sequenceAxis },
            { "batch_axis", batchAxis } };
    };
    EXPECT_THAT(evaluate("reverse_sequence", sequences({ 2, 3 }, 1, 0)), equals(reals({ 2, 3 }, { 1, 0, 2, 5, 4, 3 })));
    EXPECT_THAT(
        evaluate("reverse_sequence", sequences({ 1, 2, 0 }, 0, 1)), equals(reals({ 2, 3 }, { 0, 4, 2, 3, 1, 5 })));
    EXPECT_THAT(
        evaluate("reverse_sequence", sequences({ -5, 99 }, 1, 0)), equals(reals({ 2, 3 }, { 0, 1, 2, 5, 4, 3 })));
    EXPECT_THAT(refusal("reverse_sequence", sequences({ 1 }, 1, 0)), HasSubstr("each sequence"));
    EXPECT_THAT(refusal("reverse_sequence", sequences({ 1, 1 }, 0, 0)), HasSubstr("the same"));
}

TEST(Spreading, SlidingWindowsOverlap)
{
    const auto windows = [](Tensor x, int axis, int size, int stride) {
        return Arguments { { "x", std::move(x) }, { "axis", axis }, { "size", size }, { "stride", stride } };
    };
    EXPECT_THAT(evaluate("sliding_windows", windows(counting({ 5 }), 0, 3, 1)),
        equals(reals({ 3, 3 }, { 0, 1, 2, 1, 2, 3, 2, 3, 4 })));
    EXPECT_THAT(evaluate("sliding_windows", windows(counting({ 2, 4 }), -1, 2, 2)),
        equals(reals({ 2, 2, 2 }, { 0, 1, 2, 3, 4, 5, 6, 7 })));
    EXPECT_THAT(evaluate("sliding_windows", windows(counting({ 3, 2 }), 0, 2, 1)),
        equals(reals({ 2, 2, 2 }, { 0, 1, 2, 3, 2, 3, 4, 5 })));
    EXPECT_THAT(evaluate("sliding_windows", { { "x", counting({ 2 }) }, { "axis", 0 }, { "size", 1 } }),
        equals(reals({ 2, 1 }, { 0, 1 })));
    EXPECT_THAT(refusal("sliding_windows", windows(counting({ 2 }), 0, 3, 1)), HasSubstr("longer"));
    EXPECT_THAT(refusal("sliding_windows", windows(counting({ 2 }), 0, 0, 1)), HasSubstr("at least 1"));
    EXPECT_THAT(refusal("sliding_windows", windows(counting({ 2 }), 0, 1, 0)), HasSubstr("at least 1"));
    EXPECT_THAT(refusal("sliding_windows", windows(counting({ 1, 1, 1, 1, 1, 1, 1, 1 }), 0, 1, 1)),
        HasSubstr("too many dimensions"));
}

TEST(Spreading, KeepsABandAroundTheDiagonal)
{
    const auto band = [](int lower, int upper) {
        return evaluate("band_part",
            { { "x", reals({ 3, 3 }, { 1, 2, 3, 4, 5, 6, 7, 8, 9 }) }, { "lower", lower }, { "upper", upper } });
    };
    EXPECT_THAT(band(0, 0), equals(reals({ 3, 3 }, { 1, 0, 0, 0, 5, 0, 0, 0, 9 })));
    EXPECT_THAT(band(-1, 0), equals(reals({ 3, 3 }, { 1, 0, 0, 4, 5, 0, 7, 8, 9 })));
    EXPECT_THAT(band(1, -1), equals(reals({ 3, 3 }, { 1, 2, 3, 4, 5, 6, 0, 8, 9 })));
    EXPECT_THAT(evaluate("band_part", { { "x", counting({ 2, 2 }) } }), equals(counting({ 2, 2 })));
    EXPECT_THAT(evaluate("band_part", { { "x", booleans({ 1, 1, 2 }, { 1, 1 }) }, { "upper", 0 } }),
        equals(booleans({ 1, 1, 2 }, { 1, 0 })));
    EXPECT_THAT(refusal("band_part", { { "x", counting({ 2 }) } }), HasSubstr("rank 1"));
}
