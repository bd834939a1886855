// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

// 3 1 2 / 5 6 4
const Tensor table = reals({ 2, 3 }, { 3, 1, 2, 5, 6, 4 });

Tensor on(const char* operation, Tensor x, const Arguments& more = {})
{
    Arguments arguments = { { "x", std::move(x) } };
    arguments.insert(arguments.end(), more.begin(), more.end());
    return evaluate(operation, arguments);
}

std::vector<Tensor> topk(Tensor x, const Arguments& more)
{
    Arguments arguments = { { "x", std::move(x) } };
    arguments.insert(arguments.end(), more.begin(), more.end());
    return evaluateAll("topk", arguments);
}

} // namespace

TEST(Argsort, OrdersTheLastDimensionDescendingByDefault)
{
    EXPECT_THAT(on("argsort", table), equals(integers({ 2, 3 }, { 0, 2, 1, 1, 0, 2 })));
    EXPECT_THAT(on("argsort", table, { { "ascending", true } }), equals(integers({ 2, 3 }, { 1, 2, 0, 2, 0, 1 })));
}

TEST(Argsort, OrdersAnyDimensionOfNumbers)
{
    EXPECT_THAT(on("argsort", table, { { "axis", 0 } }), equals(integers({ 2, 3 }, { 1, 1, 1, 0, 0, 0 })));
    EXPECT_THAT(on("argsort", table, { { "axis", -2 } }), equals(integers({ 2, 3 }, { 1, 1, 1, 0, 0, 0 })));
    EXPECT_THAT(on("argsort", integers({ -1, INT32_MAX, INT32_MIN })), equals(integers({ 1, 0, 2 })));
    EXPECT_THAT(on("argsort", reals({ 2, 0 }, {})), equals(integers({ 2, 0 }, {})));
}

TEST(Argsort, KeepsEqualValuesInTheirOrder)
{
    EXPECT_THAT(on("argsort", reals({ 1, 2, 1, 2, 0.0f, -0.0f })), equals(integers({ 1, 3, 0, 2, 4, 5 })));
    EXPECT_THAT(on("argsort", reals({ 1, 2, 1, 2 }), { { "ascending", true } }), equals(integers({ 0, 2, 1, 3 })));
}

TEST(Argsort, CountsNotANumberAsTheLargest)
{
    const Tensor x = reals({ 1, notANumber, infinity, notANumber, -infinity });
    EXPECT_THAT(on("argsort", x), equals(integers({ 1, 3, 2, 0, 4 })));
    EXPECT_THAT(on("argsort", x, { { "ascending", true } }), equals(integers({ 4, 0, 2, 1, 3 })));
}

TEST(Argsort, RefusesOperandsThatDoNotFit)
{
    EXPECT_THAT(refusal("argsort", { { "x", booleans({ 1 }) } }), HasSubstr("numbers"));
    EXPECT_THAT(refusal("argsort", { { "x", table }, { "axis", 2 } }), HasSubstr("axis 2"));
    EXPECT_THAT(refusal("argsort", { { "x", 1.0f } }), HasSubstr("axis -1"));
}

TEST(Topk, GivesTheLargestValueAndItsPlaceByDefault)
{
    const auto outputs = topk(table, {});
    ASSERT_EQ(outputs.size(), 2u);
    EXPECT_THAT(outputs[0], equals(reals({ 2, 1 }, { 3, 6 })));
    EXPECT_THAT(outputs[1], equals(integers({ 2, 1 }, { 0, 1 })));
}

TEST(Topk, GivesAsManyAsAskedInOrder)
{
    const auto largest = topk(table, { { "k", 2 } });
    EXPECT_THAT(largest[0], equals(reals({ 2, 2 }, { 3, 2, 6, 5 })));
    EXPECT_THAT(largest[1], equals(integers({ 2, 2 }, { 0, 2, 1, 0 })));
    const auto smallest = topk(table, { { "k", 2 }, { "ascending", true }, { "sort", false } });
    EXPECT_THAT(smallest[0], equals(reals({ 2, 2 }, { 1, 2, 4, 5 })));
    EXPECT_THAT(smallest[1], equals(integers({ 2, 2 }, { 1, 2, 2, 0 })));
    const auto all = topk(integers({ 4, 9, 4 }), { { "k", -1 } });
    EXPECT_THAT(all[0], equals(integers({ 9, 4, 4 })));
    EXPECT_THAT(all[1], equals(integers({ 1, 0, 2 })));
}

TEST(Topk, WorksAlongAnyAxis)
{
    const auto outputs = topk(table, { { "axis", 0 } });
    EXPECT_THAT(outputs[0], equals(reals({ 1, 3 }, { 5, 6, 4 })));
    EXPECT_THAT(outputs[1], equals(integers({ 1, 3 }, { 1, 1, 1 })));
}

TEST(Topk, LeavesThePlacesOutWhenTold)
{
    const auto outputs = topk(table, { { "return_indices", false } });
    ASSERT_EQ(outputs.size(), 1u);
    EXPECT_THAT(outputs[0], equals(reals({ 2, 1 }, { 3, 6 })));
}

TEST(Topk, KeepsPlacesInTheRangeOfTheirType)
{
    std::vector<float> values(300);
    values.back() = 1;
    EXPECT_THAT(topk(reals(values), { { "output_indices_dtype", "uint16" } })[1], equals(integers({ 299 })));
    EXPECT_THAT(topk(reals(values), { { "output_indices_dtype", "uint8" } })[1], equals(integers({ 255 })));
}

TEST(Topk, MayGiveNothing)
{
    EXPECT_THAT(topk(table, { { "k", 0 } })[0], equals(reals({ 2, 0 }, {})));
    EXPECT_THAT(topk(reals({ 0 }, {}), { { "k", -1 } })[1], equals(integers({ 0 }, {})));
}

TEST(Topk, RefusesOperandsThatDoNotFit)
{
    EXPECT_THAT(refusal("topk", { { "x", table }, { "k", 4 } }), HasSubstr("\"k\""));
    EXPECT_THAT(refusal("topk", { { "x", table }, { "k", -2 } }), HasSubstr("\"k\""));
    EXPECT_THAT(refusal("topk", { { "x", table }, { "axis", 2 } }), HasSubstr("axis 2"));
    EXPECT_THAT(refusal("topk", { { "x", booleans({ 1 }) } }), HasSubstr("numbers"));
    EXPECT_THAT(refusal("topk", { { "x", table }, { "output_indices_dtype", "fp32" } }), HasSubstr("integer"));
    EXPECT_TRUE(needsValue("topk", { { "x", table }, { "k", integers({}, { 1 }) } }, "k"));
}

TEST(ExtremePlace, IsAlongTheLastDimensionByDefault)
{
    EXPECT_THAT(on("reduce_argmax", table), equals(integers({ 0, 1 })));
    EXPECT_THAT(on("reduce_argmin", table), equals(integers({ 1, 2 })));
    EXPECT_THAT(on("reduce_argmax", table, { { "keep_dims", true } }), equals(integers({ 2, 1 }, { 0, 1 })));
    EXPECT_THAT(on("reduce_argmax", table, { { "axis", 0 } }), equals(integers({ 1, 1, 1 })));
    EXPECT_THAT(
        on("reduce_argmin", table, { { "axis", -2 }, { "keep_dims", true } }), equals(integers({ 1, 3 }, { 0, 0, 0 })));
    EXPECT_THAT(on("reduce_argmax", integers({ -3, -1 })), equals(integers({}, { 1 })));
}

TEST(ExtremePlace, IsTheFirstOfEqualValues)
{
    EXPECT_THAT(on("reduce_argmax", reals({ 1, 2, 2 })), equals(integers({}, { 1 })));
    EXPECT_THAT(on("reduce_argmin", reals({ 2, 1, 1 })), equals(integers({}, { 1 })));
}

TEST(ExtremePlace, CountsNotANumberAsTheLargest)
{
    EXPECT_THAT(on("reduce_argmax", reals({ infinity, notANumber, notANumber })), equals(integers({}, { 1 })));
    EXPECT_THAT(on("reduce_argmin", reals({ notANumber, infinity })), equals(integers({}, { 1 })));
}

TEST(ExtremePlace, RefusesOperandsThatDoNotFit)
{
    EXPECT_THAT(refusal("reduce_argmax", { { "x", reals({ 2, 0 }, {}) } }), HasSubstr("empty"));
    EXPECT_THAT(refusal("reduce_argmin", { { "x", table }, { "axis", -3 } }), HasSubstr("axis -3"));
    EXPECT_THAT(refusal("reduce_argmax", { { "x", table }, { "output_dtype", "bool" } }), HasSubstr("integer"));
    EXPECT_THAT(on("reduce_argmax", reals({ 0, 2 }, {})), equals(integers({ 0 }, {})));
}

TEST(CumulativeSum, RunsAlongTheFirstDimensionByDefault)
{
    EXPECT_THAT(on("cumsum", table), equals(reals({ 2, 3 }, { 3, 1, 2, 8, 7, 6 })));
    EXPECT_THAT(on("cumsum", table, { { "axis", -1 } }), equals(reals({ 2, 3 }, { 3, 4, 6, 5, 11, 15 })));
}

TEST(CumulativeSum, MayExcludeItsPlaceAndRunBackwards)
{
    const Tensor x = integers({ 1, 2, 4 });
    EXPECT_THAT(on("cumsum", x), equals(integers({ 1, 3, 7 })));
    EXPECT_THAT(on("cumsum", x, { { "exclusive", true } }), equals(integers({ 0, 1, 3 })));
    EXPECT_THAT(on("cumsum", x, { { "reverse", true } }), equals(integers({ 7, 6, 4 })));
    EXPECT_THAT(on("cumsum", x, { { "reverse", true }, { "exclusive", true } }), equals(integers({ 6, 4, 0 })));
    EXPECT_THAT(
        on("cumsum", table, { { "axis", 1 }, { "reverse", true } }), equals(reals({ 2, 3 }, { 6, 3, 2, 15, 10, 4 })));
}

TEST(CumulativeSum, WrapsIntegersAndTakesEmptyTensors)
{
    EXPECT_THAT(on("cumsum", integers({ INT32_MAX, 1 })), equals(integers({ INT32_MAX, INT32_MIN })));
    EXPECT_THAT(on("cumsum", reals({ 0, 2 }, {})), equals(reals({ 0, 2 }, {})));
    EXPECT_THAT(refusal("cumsum", { { "x", booleans({ 1 }) } }), HasSubstr("numbers"));
    EXPECT_THAT(refusal("cumsum", { { "x", 1.0f } }), HasSubstr("axis 0"));
}
