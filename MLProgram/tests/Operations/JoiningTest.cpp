// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

TEST(Joining, ConcatenatesAlongAnAxis)
{
    const List values { counting({ 2, 1 }), counting({ 2, 2 }) };
    EXPECT_THAT(
        evaluate("concat", { { "values", values }, { "axis", 1 } }), equals(reals({ 2, 3 }, { 0, 0, 1, 1, 2, 3 })));
    EXPECT_THAT(
        evaluate("concat", { { "values", values }, { "axis", -1 } }), equals(reals({ 2, 3 }, { 0, 0, 1, 1, 2, 3 })));
    EXPECT_THAT(evaluate("concat", { { "values", List { counting({ 1, 2 }), counting({ 0, 2 }) } }, { "axis", 0 } }),
        equals(reals({ 1, 2 }, { 0, 1 })));
    EXPECT_THAT(evaluate("concat", { { "values", counting({ 2 }) }, { "axis", 0 } }), equals(reals({ 0, 1 })));
}

TEST(Joining, ConcatenatesScalarsToAVector)
{
    EXPECT_THAT(evaluate("concat", { { "values", List { integers({}, { 4 }), integers({}, { 5 }) } }, { "axis", 0 } }),
        equals(integers({ 4, 5 })));
}

TEST(Joining, InterleavesEqualTensors)
{
    const List values { reals({ 2, 2 }, { 1, 2, 3, 4 }), reals({ 2, 2 }, { 5, 6, 7, 8 }) };
    EXPECT_THAT(evaluate("concat", { { "values", values }, { "axis", 1 }, { "interleave", true } }),
        equals(reals({ 2, 4 }, { 1, 5, 2, 6, 3, 7, 4, 8 })));
    EXPECT_THAT(evaluate("concat", { { "values", values }, { "axis", 0 }, { "interleave", true } }),
        equals(reals({ 4, 2 }, { 1, 2, 5, 6, 3, 4, 7, 8 })));
    EXPECT_THAT(refusal("concat",
                    { { "values", List { counting({ 1 }), counting({ 2 }) } }, { "axis", 0 }, { "interleave", true } }),
        HasSubstr("differ"));
}

TEST(Joining, RefusesTensorsThatDoNotFit)
{
    const auto words = [](List values) {
        return refusal("concat", { { "values", std::move(values) }, { "axis", 0 } });
    };
    EXPECT_THAT(words({}), HasSubstr("no tensors"));
    EXPECT_THAT(words({ counting({ 1, 2 }), counting({ 1, 3 }) }), HasSubstr("differ"));
    EXPECT_THAT(words({ counting({ 1 }), integers({ 1 }) }), HasSubstr("several types"));
    EXPECT_THAT(words({ counting({ 1 }), counting({ 1, 1 }) }), HasSubstr("rank"));
}

TEST(Joining, SplitsIntoEqualPartsOrGivenSizes)
{
    const Tensor x = counting({ 2, 4 });
    const auto halves = evaluateAll("split", { { "x", x }, { "axis", 1 }, { "num_splits", 2 } });
    ASSERT_EQ(halves.size(), 2u);
    EXPECT_THAT(halves[0], equals(reals({ 2, 2 }, { 0, 1, 4, 5 })));
    EXPECT_THAT(halves[1], equals(reals({ 2, 2 }, { 2, 3, 6, 7 })));

    const Tensor sizes = integers({ 1, 0, 3 });
    const auto parts
        = evaluateAll("split", { { "x", x }, { "axis", -1 }, { "num_splits", 3 }, { "split_sizes", sizes } });
    ASSERT_EQ(parts.size(), 3u);
    EXPECT_THAT(parts[0], equals(reals({ 2, 1 }, { 0, 4 })));
    EXPECT_THAT(parts[1], equals(reals({ 2, 0 }, {})));
    EXPECT_THAT(parts[2], equals(reals({ 2, 3 }, { 1, 2, 3, 5, 6, 7 })));
}

TEST(Joining, RefusesPartsThatDoNotAddUp)
{
    const Tensor x = counting({ 4 });
    const auto words = [&](const char* name, Argument value) {
        return refusal("split", { { "x", x }, { "axis", 0 }, { name, std::move(value) } });
    };
    EXPECT_THAT(words("num_splits", 3), HasSubstr("equal parts"));
    EXPECT_THAT(words("num_splits", 0), HasSubstr("equal parts"));
    EXPECT_THAT(words("split_sizes", integers({ 1, 2 })), HasSubstr("add up"));
    EXPECT_THAT(words("split_sizes", integers({ 5, -1 })), HasSubstr("negative"));
    EXPECT_THAT(words("other", 1), HasSubstr("\"num_splits\" is missing"));
    EXPECT_THAT(refusal("split", { { "x", counting({ 0 }) }, { "axis", 0 }, { "num_splits", INT32_MAX } }),
        HasSubstr("more parts"));
}

TEST(Joining, StacksAlongANewAxis)
{
    const List values { reals({ 1, 2 }), reals({ 3, 4 }) };
    EXPECT_THAT(evaluate("stack", { { "values", values }, { "axis", 0 } }), equals(reals({ 2, 2 }, { 1, 2, 3, 4 })));
    EXPECT_THAT(evaluate("stack", { { "values", values }, { "axis", 1 } }), equals(reals({ 2, 2 }, { 1, 3, 2, 4 })));
    EXPECT_THAT(evaluate("stack", { { "values", values }, { "axis", -1 } }), equals(reals({ 2, 2 }, { 1, 3, 2, 4 })));
    EXPECT_THAT(
        evaluate("stack", { { "values", List { integers({}, { 7 }) } }, { "axis", 0 } }), equals(integers({ 7 })));
    EXPECT_THAT(refusal("stack", { { "values", values }, { "axis", 2 } }), HasSubstr("axis 2"));
    EXPECT_THAT(refusal("stack", { { "values", List { counting({ 1 }), counting({ 2 }) } }, { "axis", 0 } }),
        HasSubstr("differ"));
}
