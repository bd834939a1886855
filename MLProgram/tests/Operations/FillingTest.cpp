// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

TEST(Filling, FillsAShapeWithAValue)
{
    EXPECT_THAT(evaluate("fill", { { "shape", integers({ 2, 2 }) }, { "value", 1.5f } }),
        equals(reals({ 2, 2 }, { 1.5f, 1.5f, 1.5f, 1.5f })));
    EXPECT_THAT(evaluate("fill", { { "shape", integers({ 2 }) }, { "value", INT32_MIN } }),
        equals(integers({ INT32_MIN, INT32_MIN })));
    EXPECT_THAT(evaluate("fill", { { "shape", integers({ 2 }) }, { "value", true } }), equals(booleans({ 1, 1 })));
    EXPECT_THAT(evaluate("fill", { { "shape", integers({ 1, 0 }) } }), equals(reals({ 1, 0 }, {})));
    EXPECT_THAT(evaluate("fill", { { "shape", integers(std::vector<int32_t> {}) } }), equals(reals({}, { 0 })));
    EXPECT_THAT(evaluate("fill_like", { { "ref_tensor", integers({ 1, 2 }, { 8, 9 }) }, { "value", 3.0f } }),
        equals(reals({ 1, 2 }, { 3, 3 })));
}

TEST(Filling, RefusesUnusableShapes)
{
    const auto words = [](std::vector<int32_t> shape) { return refusal("fill", { { "shape", integers(shape) } }); };
    EXPECT_THAT(words({ -1 }), HasSubstr("negative"));
    EXPECT_THAT(words({ INT32_MAX, INT32_MAX, INT32_MAX }), HasSubstr("too large"));
    EXPECT_THAT(words({ 0, INT32_MAX, INT32_MAX }), HasSubstr("too large"));
    EXPECT_THAT(words({ 1, 1, 1, 1, 1, 1, 1, 1, 1 }), HasSubstr("too many"));
    EXPECT_TRUE(needsValue("fill", { { "shape", integers({ 2 }) } }, "shape"));
}

TEST(Filling, RangesExcludeTheirEnd)
{
    const auto range = [](Argument start, Argument end, Argument step) {
        return Arguments { { "start", std::move(start) }, { "end", std::move(end) }, { "step", std::move(step) } };
    };
    EXPECT_THAT(evaluate("range_1d", range(0, 5, 2)), equals(integers({ 0, 2, 4 })));
    EXPECT_THAT(evaluate("range_1d", range(0, 4, 2)), equals(integers({ 0, 2 })));
    EXPECT_THAT(evaluate("range_1d", range(3, 0, -1)), equals(integers({ 3, 2, 1 })));
    EXPECT_THAT(evaluate("range_1d", range(3, 0, 1)), equals(integers({ 0 }, {})));
    EXPECT_THAT(evaluate("range_1d", range(INT32_MIN, INT32_MAX, INT32_MAX)),
        equals(integers({ INT32_MIN, -1, INT32_MAX - 1 })));
    EXPECT_THAT(evaluate("range_1d", range(0.5f, 2.0f, 0.5f)), equals(reals({ 0.5f, 1, 1.5f })));
    EXPECT_THAT(refusal("range_1d", range(0, 5, 0)), HasSubstr("zero"));
    EXPECT_THAT(refusal("range_1d", range(0.0f, infinity, 1.0f)), HasSubstr("finite"));
    EXPECT_THAT(refusal("range_1d", range(0.0f, notANumber, 1.0f)), HasSubstr("finite"));
    EXPECT_THAT(refusal("range_1d", range(0, 5, 1.0f)), HasSubstr("types"));
    EXPECT_THAT(refusal("range_1d", range(INT32_MIN, INT32_MAX, 1)), HasSubstr("too long"));
    EXPECT_TRUE(needsValue("range_1d", range(0, integers({}, { 3 }), 1), "end"));
}

TEST(Filling, OneHotMarksAPlace)
{
    const Tensor indices = integers({ 2, 0 });
    EXPECT_THAT(evaluate("one_hot", { { "indices", indices }, { "one_hot_vector_size", 3 } }),
        equals(integers({ 2, 3 }, { 0, 0, 1, 1, 0, 0 })));
    EXPECT_THAT(evaluate("one_hot",
                    { { "indices", indices }, { "one_hot_vector_size", 3 }, { "axis", 0 }, { "on_value", 5.0f },
                        { "off_value", -1.0f } }),
        equals(reals({ 3, 2 }, { -1, 5, -1, -1, 5, -1 })));
    EXPECT_THAT(evaluate("one_hot", { { "indices", 1 }, { "one_hot_vector_size", 2 }, { "on_value", 1.0f } }),
        equals(reals({ 0, 1 })));
    EXPECT_THAT(evaluate("one_hot", { { "indices", integers({ -1, INT32_MAX }) }, { "one_hot_vector_size", 1 } }),
        equals(integers({ 2, 1 }, { 0, 0 })));
    EXPECT_THAT(refusal("one_hot", { { "indices", indices }, { "one_hot_vector_size", -1 } }), HasSubstr("negative"));
    EXPECT_THAT(refusal("one_hot", { { "indices", indices }, { "one_hot_vector_size", 1 }, { "axis", 2 } }),
        HasSubstr("axis 2"));
    EXPECT_THAT(refusal("one_hot",
                    { { "indices", indices }, { "one_hot_vector_size", 1 }, { "on_value", 1 }, { "off_value", 0.0f } }),
        HasSubstr("different types"));
}

TEST(Filling, NonZeroTellsThePlaces)
{
    EXPECT_THAT(evaluate("non_zero", { { "x", reals({ 2, 2 }, { 0, 3, notANumber, 0 }) } }),
        equals(integers({ 2, 2 }, { 0, 1, 1, 0 })));
    EXPECT_THAT(evaluate("non_zero", { { "x", booleans({ 0, 1, 1 }) } }), equals(integers({ 2, 1 }, { 1, 2 })));
    EXPECT_THAT(evaluate("non_zero", { { "x", integers({ 0, 0 }) } }), equals(integers({ 0, 1 }, {})));
    EXPECT_TRUE(needsValue("non_zero", { { "x", counting({ 3 }) } }, "x"));
}
