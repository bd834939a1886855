// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Arguments bounds(Tensor x, std::vector<int32_t> begin, std::vector<int32_t> end, Arguments more = {})
{
    more.insert(more.end(), { { "x", std::move(x) }, { "begin", integers(begin) }, { "end", integers(end) } });
    return more;
}

// Part of 0, 1, 2, 3, 4.
Tensor part(int begin, int end, Arguments more = {})
{
    return evaluate("slice_by_index", bounds(counting({ 5 }), { begin }, { end }, std::move(more)));
}

Arguments stride(int step)
{
    return { { "stride", integers({ step }) } };
}

} // namespace

TEST(Slicing, CountsNegativeBoundsFromTheEndAndClampsOthers)
{
    EXPECT_THAT(part(1, 3), equals(reals({ 1, 2 })));
    EXPECT_THAT(part(-3, -1), equals(reals({ 2, 3 })));
    EXPECT_THAT(part(-9, 99), equals(reals({ 0, 1, 2, 3, 4 })));
    EXPECT_THAT(part(3, 1), equals(reals({ 0 }, {})));
    EXPECT_THAT(part(7, 9), equals(reals({ 0 }, {})));
}

TEST(Slicing, StepsForwardAndBackward)
{
    EXPECT_THAT(part(0, 5, stride(2)), equals(reals({ 0, 2, 4 })));
    EXPECT_THAT(part(1, 4, stride(2)), equals(reals({ 1, 3 })));
    EXPECT_THAT(part(4, 0, stride(-2)), equals(reals({ 4, 2 })));
    EXPECT_THAT(part(-1, -9, stride(-1)), equals(reals({ 4, 3, 2, 1, 0 })));
    EXPECT_THAT(part(9, 2, stride(-1)), equals(reals({ 4, 3 })));
    EXPECT_THAT(part(1, 5, stride(INT32_MAX)), equals(reals({ 1 })));
    EXPECT_THAT(part(4, -9, stride(INT32_MIN)), equals(reals({ 4 })));
}

TEST(Slicing, MasksLeaveBoundsOpen)
{
    const auto open = [](bool begin, bool end, int step) {
        return Arguments { { "begin_mask", booleans({ begin }) }, { "end_mask", booleans({ end }) },
            { "stride", integers({ step }) } };
    };
    EXPECT_THAT(part(2, 4, open(true, false, 1)), equals(reals({ 0, 1, 2, 3 })));
    EXPECT_THAT(part(2, 0, open(false, true, 1)), equals(reals({ 2, 3, 4 })));
    EXPECT_THAT(part(0, 0, open(true, true, -1)), equals(reals({ 4, 3, 2, 1, 0 })));
    EXPECT_THAT(part(2, 0, open(false, true, -2)), equals(reals({ 2, 0 })));
    EXPECT_THAT(part(0, 2, open(true, false, -1)), equals(reals({ 4, 3 })));
}

TEST(Slicing, SqueezedDimensionsTakeOneElementAndGo)
{
    const auto squeezed = [](std::vector<int32_t> begin, std::vector<int> mask) {
        return evaluate(
            "slice_by_index", bounds(counting({ 2, 3 }), begin, { 2, 3 }, { { "squeeze_mask", booleans(mask) } }));
    };
    EXPECT_THAT(squeezed({ 1, 0 }, { 1, 0 }), equals(reals({ 3, 4, 5 })));
    EXPECT_THAT(squeezed({ 0, -1 }, { 0, 1 }), equals(reals({ 2, 5 })));
    EXPECT_THAT(squeezed({ -2, 1 }, { 1, 1 }), equals(reals({}, { 1 })));
    EXPECT_THAT(
        refusal("slice_by_index", bounds(counting({ 2 }), { 2 }, { 0 }, { { "squeeze_mask", booleans({ 1 }) } })),
        HasSubstr("does not exist"));
}

TEST(Slicing, WorksInSeveralDimensionsAndOnEmptyTensors)
{
    EXPECT_THAT(evaluate("slice_by_index", bounds(counting({ 2, 3, 2 }), { 0, 1, 1 }, { 2, 3, 2 })),
        equals(reals({ 2, 2, 1 }, { 3, 5, 9, 11 })));
    EXPECT_THAT(
        evaluate("slice_by_index", bounds(counting({ 0, 2 }), { 0, 0 }, { 5, 1 })), equals(reals({ 0, 1 }, {})));
    EXPECT_THAT(
        evaluate("slice_by_index", bounds(counting({ 0 }), { -1 }, { -9 }, stride(-1))), equals(reals({ 0 }, {})));
}

TEST(Slicing, RefusesBoundsThatDoNotFit)
{
    EXPECT_THAT(refusal("slice_by_index", bounds(counting({ 2, 2 }), { 0 }, { 1 })), HasSubstr("each dimension"));
    EXPECT_THAT(refusal("slice_by_index", bounds(counting({ 2 }), { 0 }, { 1 }, stride(0))), HasSubstr("zero"));
    EXPECT_THAT(
        refusal("slice_by_index", bounds(counting({ 2 }), { 0 }, { 1 }, { { "end_mask", booleans({ 1, 0 }) } })),
        HasSubstr("mask"));
    EXPECT_TRUE(needsValue("slice_by_index", bounds(counting({ 2 }), { 0 }, { 1 }), "begin"));
}

TEST(Slicing, BySizeTakesThatManyOrTheRest)
{
    const auto sized = [](std::vector<int32_t> begin, std::vector<int32_t> size) {
        return Arguments { { "x", counting({ 2, 4 }) }, { "begin", integers(begin) }, { "size", integers(size) } };
    };
    EXPECT_THAT(evaluate("slice_by_size", sized({ 1, 1 }, { 1, 2 })), equals(reals({ 1, 2 }, { 5, 6 })));
    EXPECT_THAT(evaluate("slice_by_size", sized({ 0, -1 }, { -1, -1 })), equals(reals({ 2, 1 }, { 3, 7 })));
    EXPECT_THAT(evaluate("slice_by_size", sized({ 2, 0 }, { -1, 4 })), equals(reals({ 0, 4 }, {})));
    EXPECT_THAT(refusal("slice_by_size", sized({ 0, 3 }, { 1, 2 })), HasSubstr("ends outside"));
    EXPECT_THAT(refusal("slice_by_size", sized({ 0, 5 }, { 1, 0 })), HasSubstr("begins outside"));
    EXPECT_THAT(refusal("slice_by_size", sized({ 0, -5 }, { 1, 0 })), HasSubstr("begins outside"));
    EXPECT_THAT(refusal("slice_by_size", sized({ 0, 0 }, { 1, -2 })), HasSubstr("ends outside"));
    EXPECT_THAT(refusal("slice_by_size", sized({ 0 }, { 1 })), HasSubstr("each dimension"));
}

TEST(Slicing, UpdateReplacesAPart)
{
    const auto updated = [](Tensor update, Arguments more = {}) {
        more.emplace_back("update", std::move(update));
        return bounds(counting({ 2, 3 }), { 0, 1 }, { 2, 3 }, std::move(more));
    };
    EXPECT_THAT(evaluate("slice_update", updated(reals({ 2, 2 }, { 10, 20, 30, 40 }))),
        equals(reals({ 2, 3 }, { 0, 10, 20, 3, 30, 40 })));
    EXPECT_THAT(evaluate("slice_update", updated(reals({ 10, 20 }), { { "squeeze_mask", booleans({ 1, 0 }) } })),
        equals(reals({ 2, 3 }, { 0, 10, 20, 3, 4, 5 })));
    const Arguments backward
        = bounds(counting({ 3 }), { -1 }, { 0 }, { { "update", reals({ 10, 20 }) }, { "stride", integers({ -1 }) } });
    EXPECT_THAT(evaluate("slice_update", backward), equals(reals({ 0, 20, 10 })));
    const Arguments nothing = bounds(counting({ 3 }), { 2 }, { 1 }, { { "update", counting({ 0 }) } });
    EXPECT_THAT(evaluate("slice_update", nothing), equals(counting({ 3 })));
}

TEST(Slicing, UpdateRefusesAnotherShape)
{
    const auto words = [](Tensor update) {
        return refusal("slice_update", bounds(counting({ 3 }), { 0 }, { 2 }, { { "update", update } }));
    };
    EXPECT_THAT(words(reals({ 1 })), HasSubstr("shape of the part"));
    EXPECT_THAT(words(integers({ 1, 2 })), HasSubstr("different types"));
}
