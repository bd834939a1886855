// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Tensor of(const char* operation, Tensor x)
{
    return evaluate(operation, { { "x", std::move(x) } });
}

Tensor castTo(const char* type, Tensor x)
{
    return evaluate("cast", { { "x", std::move(x) }, { "dtype", type } });
}

} // namespace

TEST(ElementwiseUnary, ComputesTheUsualFunctions)
{
    EXPECT_THAT(of("exp", reals({ 0, 1, -infinity })), isNear(reals({ 1, 2.7182818f, 0 })));
    EXPECT_THAT(of("exp2", reals({ 3, -1 })), isNear(reals({ 8, 0.5f })));
    EXPECT_THAT(of("sqrt", reals({ 9, 2, -1 })), isNear(reals({ 3, 1.4142135f, notANumber })));
    EXPECT_THAT(of("sin", reals({ 0, 1.5707964f })), isNear(reals({ 0, 1 })));
    EXPECT_THAT(of("cos", reals({ 0, 3.1415927f })), isNear(reals({ 1, -1 })));
    EXPECT_THAT(of("tan", reals({ 0.78539816f })), isNear(reals({ 1 })));
    EXPECT_THAT(of("asin", reals({ 1 })), isNear(reals({ 1.5707964f })));
    EXPECT_THAT(of("acos", reals({ -1 })), isNear(reals({ 3.1415927f })));
    EXPECT_THAT(of("atan", reals({ 1 })), isNear(reals({ 0.78539816f })));
    EXPECT_THAT(of("sinh", reals({ 1 })), isNear(reals({ 1.1752012f })));
    EXPECT_THAT(of("cosh", reals({ 1 })), isNear(reals({ 1.5430806f })));
    EXPECT_THAT(of("tanh", reals({ 1, -20 })), isNear(reals({ 0.76159416f, -1 })));
    EXPECT_THAT(of("atanh", reals({ 0.5f })), isNear(reals({ 0.54930614f })));
    EXPECT_THAT(of("erf", reals({ 0.5f, -0.5f })), isNear(reals({ 0.5204999f, -0.5204999f })));
}

TEST(ElementwiseUnary, WorksOnIntegersWhereThatMakesSense)
{
    EXPECT_THAT(of("abs", integers({ -3, 3, INT32_MIN })), equals(integers({ 3, 3, INT32_MIN })));
    EXPECT_THAT(of("sign", integers({ -3, 0, 9 })), equals(integers({ -1, 0, 1 })));
    EXPECT_THAT(of("square", integers({ -3, 65536 })), equals(integers({ 9, 0 })));
    EXPECT_THAT(of("floor", integers({ -3 })), equals(integers({ -3 })));
    EXPECT_THAT(of("ceil", integers({ -3 })), equals(integers({ -3 })));
    EXPECT_THAT(of("round", integers({ -3 })), equals(integers({ -3 })));
    EXPECT_THAT(refusal("exp", { { "x", 1 } }), HasSubstr("real"));
    EXPECT_THAT(refusal("abs", { { "x", true } }), HasSubstr("numbers"));
}

TEST(ElementwiseUnary, TakesSizesAndSigns)
{
    EXPECT_THAT(of("abs", reals({ -2.5f, 2.5f, -infinity })), equals(reals({ 2.5f, 2.5f, infinity })));
    EXPECT_THAT(of("sign", reals({ -2.5f, 0, 7, notANumber })), equals(reals({ -1, 0, 1, notANumber })));
    EXPECT_THAT(of("square", reals({ -1.5f })), equals(reals({ 2.25f })));
}

TEST(ElementwiseUnary, RoundsHalvesToEven)
{
    const Tensor x = reals({ 0.5f, 1.5f, 2.5f, -0.5f, -1.5f, 2.4f });
    EXPECT_THAT(of("round", x), equals(reals({ 0, 2, 2, 0, -2, 2 })));
    EXPECT_THAT(of("floor", x), equals(reals({ 0, 1, 2, -1, -2, 2 })));
    EXPECT_THAT(of("ceil", x), equals(reals({ 1, 2, 3, 0, -1, 3 })));
}

TEST(ElementwiseUnary, AddsItsEpsilonFirst)
{
    EXPECT_THAT(of("log", reals({ 1, 0 })), isNear(reals({ 0, -103.27893f })));
    EXPECT_THAT(evaluate("log", { { "x", 0.0f }, { "epsilon", 1.0f } }), equals(reals({}, { 0 })));
    EXPECT_THAT(of("rsqrt", reals({ 4, 0 })), isNear(reals({ 0.5f, 1e6f })));
    EXPECT_THAT(evaluate("rsqrt", { { "x", 3.0f }, { "epsilon", 1.0f } }), equals(reals({}, { 0.5f })));
    EXPECT_THAT(of("inverse", reals({ 0 })), isNear(reals({ 10000 })));
    EXPECT_THAT(evaluate("inverse", { { "x", 3.0f }, { "epsilon", 1.0f } }), equals(reals({}, { 0.25f })));
}

TEST(ElementwiseUnary, ClipsBetweenBoundsThatMayBeInfinite)
{
    const auto clip = [](Tensor x, float low, float high) {
        return evaluate("clip", { { "x", std::move(x) }, { "alpha", low }, { "beta", high } });
    };
    EXPECT_THAT(clip(reals({ -2, 0.5f, 9 }), -1, 1), equals(reals({ -1, 0.5f, 1 })));
    EXPECT_THAT(clip(reals({ -2, 9 }), 0, infinity), equals(reals({ 0, 9 })));
    EXPECT_THAT(clip(integers({ -2, 9 }), -infinity, 3), equals(integers({ -2, 3 })));
    EXPECT_THAT(clip(integers({ INT32_MAX }), 0, infinity), equals(integers({ INT32_MAX })));
    EXPECT_THAT(refusal("clip", { { "x", 1.0f }, { "beta", 1.0f } }), HasSubstr("\"alpha\" is missing"));
}

TEST(ElementwiseUnary, ThresholdIsALowerBound)
{
    EXPECT_THAT(evaluate("threshold", { { "x", reals({ -2, 3 }) }, { "alpha", 1.0f } }), equals(reals({ 1, 3 })));
    EXPECT_THAT(evaluate("threshold", { { "x", integers({ -2, 3 }) }, { "alpha", 1.0f } }), equals(integers({ 1, 3 })));
}

TEST(ElementwiseUnary, CastsTowardZeroAndSaturate)
{
    EXPECT_THAT(castTo("int32", reals({ 2.9f, -2.9f, 1e20f, -infinity, notANumber })),
        equals(integers({ 2, -2, INT32_MAX, INT32_MIN, 0 })));
    EXPECT_THAT(castTo("int8", reals({ 300, -300, 5.5f })), equals(integers({ 127, -128, 5 })));
    EXPECT_THAT(castTo("uint8", integers({ 300, -1, 5 })), equals(integers({ 255, 0, 5 })));
    EXPECT_THAT(castTo("int16", integers({ 40000, -40000 })), equals(integers({ 32767, -32768 })));
    EXPECT_THAT(castTo("uint16", integers({ 70000, -1 })), equals(integers({ 65535, 0 })));
}

TEST(ElementwiseUnary, CastsBetweenNumbersAndBooleans)
{
    EXPECT_THAT(castTo("bool", reals({ 0, -0.0f, 0.1f, notANumber })), equals(booleans({ 0, 0, 1, 1 })));
    EXPECT_THAT(castTo("bool", integers({ 0, 256 })), equals(booleans({ 0, 1 })));
    EXPECT_THAT(castTo("fp32", booleans({ 0, 1 })), equals(reals({ 0, 1 })));
    EXPECT_THAT(castTo("fp16", integers({ -3 })), equals(reals({ -3 })));
    EXPECT_THAT(castTo("int32", booleans({ 0, 1 })), equals(integers({ 0, 1 })));
    EXPECT_THAT(refusal("cast", { { "x", 1.0f }, { "dtype", "complex" } }), HasSubstr("\"complex\""));
}

TEST(ElementwiseUnary, NegatesBooleans)
{
    EXPECT_THAT(of("logical_not", booleans({ 0, 1 })), equals(booleans({ 1, 0 })));
    EXPECT_THAT(refusal("logical_not", { { "x", 1 } }), HasSubstr("booleans"));
}

TEST(ElementwiseUnary, SelectionIgnoresTheSideNotTaken)
{
    const Tensor selected = evaluate("select",
        { { "cond", booleans({ 2 }, { 1, 0 }) }, { "a", reals({ 1, notANumber }) },
            { "b", reals({ notANumber, 2 }) } });
    EXPECT_THAT(selected, equals(reals({ 1, 2 })));
}

TEST(ElementwiseUnary, SelectionStretchesAllThreeOperands)
{
    EXPECT_THAT(evaluate("select",
                    { { "cond", booleans({ 2, 1 }, { 1, 0 }) }, { "a", integers({ 3 }, { 1, 2, 3 }) }, { "b", -1 } }),
        equals(integers({ 2, 3 }, { 1, 2, 3, -1, -1, -1 })));
    EXPECT_THAT(refusal("select", { { "cond", 1 }, { "a", 1 }, { "b", 1 } }), HasSubstr("booleans"));
    EXPECT_THAT(refusal("select", { { "cond", true }, { "a", 1.0f }, { "b", 1 } }), HasSubstr("one type"));
}

TEST(ElementwiseUnary, IdentityCopiesAnyType)
{
    EXPECT_THAT(of("identity", reals({ 1, 2 }, { 3, 4 })), equals(reals({ 1, 2 }, { 3, 4 })));
    EXPECT_THAT(of("identity", booleans({ 1, 0 })), equals(booleans({ 1, 0 })));
    EXPECT_THAT(of("identity", integers({ 0 }, {})), equals(integers({ 0 }, {})));
}
