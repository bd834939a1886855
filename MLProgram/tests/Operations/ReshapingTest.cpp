// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Tensor reshaped(const Shape& from, std::vector<int32_t> shape, int opset = 17)
{
    return evaluate("reshape", { { "x", counting(from) }, { "shape", integers(shape) } }, opset);
}

} // namespace

TEST(Reshaping, KeepsTheOrderOfElements)
{
    EXPECT_THAT(reshaped({ 2, 3 }, { 3, 2 }), equals(reals({ 3, 2 }, { 0, 1, 2, 3, 4, 5 })));
    EXPECT_THAT(reshaped({ 1, 1 }, {}), equals(reals({}, { 0 })));
    EXPECT_THAT(evaluate("reshape", { { "x", booleans({ 1, 0 }) }, { "shape", integers({ 2, 1 }) } }),
        equals(booleans({ 2, 1 }, { 1, 0 })));
}

TEST(Reshaping, InfersOneDimension)
{
    EXPECT_EQ(reshaped({ 2, 3, 4 }, { 6, -1 }).type().shape, (Shape { 6, 4 }));
    EXPECT_EQ(reshaped({ 0, 4 }, { -1, 4 }).type().shape, (Shape { 0, 4 }));
    EXPECT_THAT(refusal("reshape", { { "x", counting({ 6 }) }, { "shape", integers({ -1, -1 }) } }),
        HasSubstr("two dimensions"));
    EXPECT_THAT(refusal("reshape", { { "x", counting({ 6 }) }, { "shape", integers({ 4, -1 }) } }),
        HasSubstr("number of elements"));
}

TEST(Reshaping, CopiesDimensionsByIndexInOldOpsetsAndFromTheRightInNewOnes)
{
    EXPECT_EQ(reshaped({ 2, 3, 4 }, { 0, 0, 4 }, 16).type().shape, (Shape { 2, 3, 4 }));
    EXPECT_EQ(reshaped({ 2, 3, 4 }, { 6, 0 }, 17).type().shape, (Shape { 6, 4 }));
    EXPECT_EQ(reshaped({ 3, 4 }, { 0, 3, 0 }, 17).type().shape, (Shape { 1, 3, 4 }));
    EXPECT_THAT(refusal("reshape", { { "x", counting({ 2, 3, 4 }) }, { "shape", integers({ 6, 0 }) } }, 16),
        HasSubstr("same rank"));
}

TEST(Reshaping, RefusesOtherShapes)
{
    const auto words = [](std::vector<int32_t> shape) {
        return refusal("reshape", { { "x", counting({ 6 }) }, { "shape", integers(shape) } });
    };
    EXPECT_THAT(words({ 7 }), HasSubstr("number of elements"));
    EXPECT_THAT(words({ -2, -3 }), HasSubstr("negative"));
    EXPECT_THAT(words({ 65536, 65536, 65536, 65536, 65536 }), HasSubstr("too large"));
    EXPECT_THAT(words({ 6, 1, 1, 1, 1, 1, 1, 1, 1 }), HasSubstr("too many dimensions"));
    EXPECT_TRUE(needsValue("reshape", { { "x", counting({ 6 }) }, { "shape", integers({ 6 }) } }, "shape"));
}

TEST(Reshaping, TakesShapesOfReferences)
{
    const Arguments arguments { { "x", counting({ 6, 4 }) },
        { "ref_tensors", List { counting({ 2, 9 }), counting({ 5, 3, 4 }) } },
        { "begins", List { integers({}, { 0 }), integers({}, { -2 }) } },
        { "ends", List { integers({}, { 1 }), integers({}, { 0 }) } },
        { "end_masks", List { booleans({}, { 0 }), booleans({}, { 1 }) } } };
    EXPECT_EQ(evaluate("reshape_like", arguments).type().shape, (Shape { 2, 3, 4 }));
    Arguments shorter = arguments;
    shorter[2].second = List { integers({}, { 0 }) };
    EXPECT_THAT(refusal("reshape_like", shorter), HasSubstr("lists do not match"));
    Arguments smaller = arguments;
    smaller[0].second = counting({ 5 });
    EXPECT_THAT(refusal("reshape_like", smaller), HasSubstr("number of elements"));
}

TEST(Reshaping, ExpandedAxesCountInTheOutput)
{
    const auto expanded = [](std::vector<int32_t> axes) {
        return evaluate("expand_dims", { { "x", counting({ 2, 3 }) }, { "axes", integers(axes) } }).type().shape;
    };
    EXPECT_EQ(expanded({ 0 }), (Shape { 1, 2, 3 }));
    EXPECT_EQ(expanded({ -1 }), (Shape { 2, 3, 1 }));
    EXPECT_EQ(expanded({ 3, 0 }), (Shape { 1, 2, 3, 1 }));
    EXPECT_EQ(expanded({ 1, 2 }), (Shape { 2, 1, 1, 3 }));
    const auto words = [](std::vector<int32_t> axes) {
        return refusal("expand_dims", { { "x", counting({ 2, 3 }) }, { "axes", integers(axes) } });
    };
    EXPECT_THAT(words({ 1, -3 }), HasSubstr("twice"));
    EXPECT_THAT(words({ 3 }), HasSubstr("axis 3"));
    EXPECT_THAT(words({ 0, 1, 2, 3, 4, 5, 6 }), HasSubstr("too many"));
}

TEST(Reshaping, SqueezeDropsDimensionsOfOne)
{
    EXPECT_EQ(evaluate("squeeze", { { "x", counting({ 1, 2, 1 }) } }).type().shape, (Shape { 2 }));
    EXPECT_EQ(evaluate("squeeze", { { "x", counting({ 1, 1 }) } }).type().shape, (Shape {}));
    EXPECT_EQ(evaluate("squeeze", { { "x", counting({ 1, 2, 1 }) }, { "axes", integers({ -1 }) } }).type().shape,
        (Shape { 1, 2 }));
    EXPECT_THAT(refusal("squeeze", { { "x", counting({ 1, 2 }) }, { "axes", integers({ 1 }) } }), HasSubstr("of 1"));
}

TEST(Reshaping, FlattensInTwo)
{
    const auto flat = [](int axis) {
        return evaluate("flatten2d", { { "x", counting({ 2, 3, 4 }) }, { "axis", axis } }).type().shape;
    };
    EXPECT_EQ(evaluate("flatten2d", { { "x", counting({ 2, 3, 4 }) } }).type().shape, (Shape { 2, 12 }));
    EXPECT_EQ(flat(0), (Shape { 1, 24 }));
    EXPECT_EQ(flat(-1), (Shape { 6, 4 }));
    EXPECT_EQ(flat(3), (Shape { 24, 1 }));
    EXPECT_THAT(refusal("flatten2d", { { "x", counting({ 2 }) }, { "axis", 2 } }), HasSubstr("axis"));
}

TEST(Reshaping, ShapeTellsTheDimensions)
{
    EXPECT_THAT(evaluate("shape", { { "x", counting({ 2, 0, 4 }) } }), equals(integers({ 2, 0, 4 })));
    EXPECT_THAT(evaluate("shape", { { "x", 1.0f } }), equals(integers(std::vector<int32_t> {})));
}
