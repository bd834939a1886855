// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Tensor both(const char* operation, Tensor x, Tensor y)
{
    return evaluate(operation, { { "x", std::move(x) }, { "y", std::move(y) } });
}

} // namespace

TEST(ElementwiseBinary, ComputesOnReals)
{
    const Tensor x = reals({ 6, -7, 0.5f });
    const Tensor y = reals({ 4, 2, -2 });
    EXPECT_THAT(both("add", x, y), equals(reals({ 10, -5, -1.5f })));
    EXPECT_THAT(both("sub", x, y), equals(reals({ 2, -9, 2.5f })));
    EXPECT_THAT(both("mul", x, y), equals(reals({ 24, -14, -1 })));
    EXPECT_THAT(both("real_div", x, y), equals(reals({ 1.5f, -3.5f, -0.25f })));
    EXPECT_THAT(both("maximum", x, y), equals(reals({ 6, 2, 0.5f })));
    EXPECT_THAT(both("minimum", x, y), equals(reals({ 4, -7, -2 })));
    EXPECT_THAT(both("pow", x, y), equals(reals({ 1296, 49, 4 })));
}

TEST(ElementwiseBinary, IntegersWrapAround)
{
    const Tensor x = integers({ INT32_MAX, INT32_MIN, 1 << 20 });
    const Tensor y = integers({ 1, 1, 1 << 13 });
    EXPECT_THAT(both("add", x, y), equals(integers({ INT32_MIN, INT32_MIN + 1, (1 << 20) + (1 << 13) })));
    EXPECT_THAT(both("sub", x, y), equals(integers({ INT32_MAX - 1, INT32_MAX, (1 << 20) - (1 << 13) })));
    EXPECT_THAT(both("mul", x, y), equals(integers({ INT32_MAX, INT32_MIN, 0 })));
}

TEST(ElementwiseBinary, IntegerDivisionIsCutTowardZero)
{
    EXPECT_THAT(
        both("real_div", integers({ 7, -7, 7, -7 }), integers({ 2, 2, -2, -2 })), equals(integers({ 3, -3, -3, 3 })));
    EXPECT_THAT(both("real_div", integers({ 5, INT32_MIN }), integers({ 0, -1 })), equals(integers({ 0, INT32_MIN })));
}

TEST(ElementwiseBinary, FlooredDivisionAndRemainderFollowTheSignOfTheDivisor)
{
    const Tensor x = integers({ 7, -7, 7, -7, 6, 5 });
    const Tensor y = integers({ 2, 2, -2, -2, -3, 0 });
    EXPECT_THAT(both("floor_div", x, y), equals(integers({ 3, -4, -4, 3, -2, 0 })));
    EXPECT_THAT(both("mod", x, y), equals(integers({ 1, 1, -1, -1, 0, 0 })));
    EXPECT_THAT(both("floor_div", integers({ INT32_MIN }), integers({ -1 })), equals(integers({ INT32_MIN })));
    EXPECT_THAT(both("mod", integers({ INT32_MIN }), integers({ -1 })), equals(integers({ 0 })));

    const Tensor realX = reals({ 5.5f, -5.5f, 5.5f, -5.5f });
    const Tensor realY = reals({ 2, 2, -2, -2 });
    EXPECT_THAT(both("floor_div", realX, realY), equals(reals({ 2, -3, -3, 2 })));
    EXPECT_THAT(both("mod", realX, realY), equals(reals({ 1.5f, 0.5f, -0.5f, -1.5f })));
}

TEST(ElementwiseBinary, IntegerPowersAreExact)
{
    EXPECT_THAT(both("pow", integers({ 3, -2, 7, 0, 2, -1, 1, 0 }), integers({ 13, 5, 0, 0, -1, -3, -2, -1 })),
        equals(integers({ 1594323, -32, 1, 1, 0, -1, 1, 0 })));
}

TEST(ElementwiseBinary, ComparesNumbersAndBooleans)
{
    const Tensor x = reals({ 1, 2, 3, notANumber });
    const Tensor y = reals({ 2, 2, 2, notANumber });
    EXPECT_THAT(both("equal", x, y), equals(booleans({ 0, 1, 0, 0 })));
    EXPECT_THAT(both("not_equal", x, y), equals(booleans({ 1, 0, 1, 1 })));
    EXPECT_THAT(both("less", x, y), equals(booleans({ 1, 0, 0, 0 })));
    EXPECT_THAT(both("less_equal", x, y), equals(booleans({ 1, 1, 0, 0 })));
    EXPECT_THAT(both("greater", x, y), equals(booleans({ 0, 0, 1, 0 })));
    EXPECT_THAT(both("greater_equal", x, y), equals(booleans({ 0, 1, 1, 0 })));
    EXPECT_THAT(both("less", integers({ 16777216 }), integers({ 16777217 })), equals(booleans({ 1 })));
    EXPECT_THAT(both("equal", booleans({ 0, 1 }), booleans({ 1, 1 })), equals(booleans({ 0, 1 })));
}

TEST(ElementwiseBinary, CombinesBooleans)
{
    const Tensor x = booleans({ 0, 0, 1, 1 });
    const Tensor y = booleans({ 0, 1, 0, 1 });
    EXPECT_THAT(both("logical_and", x, y), equals(booleans({ 0, 0, 0, 1 })));
    EXPECT_THAT(both("logical_or", x, y), equals(booleans({ 0, 1, 1, 1 })));
    EXPECT_THAT(both("logical_xor", x, y), equals(booleans({ 0, 1, 1, 0 })));
}

TEST(ElementwiseBinary, StretchesDimensionsOfOne)
{
    EXPECT_THAT(both("add", reals({ 2, 1 }, { 10, 20 }), reals({ 1, 3 }, { 1, 2, 3 })),
        equals(reals({ 2, 3 }, { 11, 12, 13, 21, 22, 23 })));
    EXPECT_THAT(both("sub", reals({ 2, 1, 2 }, { 1, 2, 3, 4 }), reals({ 2 }, { 1, 1 })),
        equals(reals({ 2, 1, 2 }, { 0, 1, 2, 3 })));
    EXPECT_THAT(both("mul", reals({}, { 3 }), reals({ 1, 2 }, { 1, 2 })), equals(reals({ 1, 2 }, { 3, 6 })));
    EXPECT_THAT(both("mul", reals({}, { 3 }), reals({}, { 4 })), equals(reals({}, { 12 })));
}

TEST(ElementwiseBinary, EmptyTensorsGiveEmptyTensors)
{
    EXPECT_THAT(both("add", reals({ 0, 3 }, {}), reals({ 3 }, { 1, 2, 3 })), equals(reals({ 0, 3 }, {})));
    EXPECT_THAT(both("add", reals({ 0 }, {}), reals({ 1 }, { 1 })), equals(reals({ 0 }, {})));
}

TEST(ElementwiseBinary, KeepsInfinitiesAndNaN)
{
    EXPECT_THAT(
        both("add", reals({ -infinity, infinity }), reals({ 5, -infinity })), equals(reals({ -infinity, notANumber })));
    EXPECT_THAT(
        both("maximum", reals({ notANumber, 1 }), reals({ 1, notANumber })), equals(reals({ notANumber, notANumber })));
    EXPECT_THAT(
        both("minimum", reals({ notANumber, 1 }), reals({ 1, notANumber })), equals(reals({ notANumber, notANumber })));
    EXPECT_THAT(both("real_div", reals({ 1, 0 }), reals({ 0, 0 })), equals(reals({ infinity, notANumber })));
}

TEST(ElementwiseBinary, RefusesOperandsThatDoNotFit)
{
    EXPECT_THAT(refusal("add", { { "x", 1.0f } }), HasSubstr("\"y\" is missing"));
    EXPECT_THAT(refusal("add", { { "x", 1.0f }, { "y", 1 } }), HasSubstr("one type"));
    EXPECT_THAT(refusal("add", { { "x", true }, { "y", true } }), HasSubstr("numbers"));
    EXPECT_THAT(refusal("logical_and", { { "x", 1 }, { "y", 1 } }), HasSubstr("booleans"));
    EXPECT_THAT(refusal("mul", { { "x", counting({ 2 }) }, { "y", counting({ 3 }) } }), HasSubstr("stretched"));
    EXPECT_THAT(refusal("mul", { { "x", "text" }, { "y", 1.0f } }), HasSubstr("not a text"));
}
