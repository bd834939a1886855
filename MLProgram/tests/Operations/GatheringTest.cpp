// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

// 0 1 2 / 3 4 5
const Tensor table = counting({ 2, 3 });

Tensor gather(Tensor x, Tensor indices, int axis, int batch = 0)
{
    return evaluate("gather",
        { { "x", std::move(x) }, { "indices", std::move(indices) }, { "axis", axis }, { "batch_dims", batch } });
}

Tensor gatherTuples(Tensor x, Tensor indices, int batch = 0)
{
    return evaluate("gather_nd", { { "x", std::move(x) }, { "indices", std::move(indices) }, { "batch_dims", batch } });
}

} // namespace

TEST(Gathering, PicksRowsByDefault)
{
    EXPECT_THAT(evaluate("gather", { { "x", table }, { "indices", integers({ 1, 0, 1 }) } }),
        equals(reals({ 3, 3 }, { 3, 4, 5, 0, 1, 2, 3, 4, 5 })));
}

TEST(Gathering, PicksAlongAnyAxis)
{
    EXPECT_THAT(gather(table, integers({ 2, 0 }), 1), equals(reals({ 2, 2 }, { 2, 0, 5, 3 })));
    EXPECT_THAT(gather(table, integers({ 2, 0 }), -1), equals(reals({ 2, 2 }, { 2, 0, 5, 3 })));
}

TEST(Gathering, PutsTheDimensionsOfTheIndicesInPlaceOfTheAxis)
{
    EXPECT_THAT(gather(table, integers({}, { 1 }), 0), equals(reals({ 3 }, { 3, 4, 5 })));
    EXPECT_THAT(gather(table, integers({ 2, 1 }, { 1, 2 }), 1), equals(reals({ 2, 2, 1 }, { 1, 2, 4, 5 })));
}

TEST(Gathering, WrapsNegativeIndicesAndHoldsOthersToTheEdge)
{
    const Tensor x = reals({ 10, 11, 12 });
    EXPECT_THAT(
        gather(x, integers({ -1, -3, -4, 3, INT32_MAX, INT32_MIN }), 0), equals(reals({ 12, 10, 10, 12, 12, 10 })));
}

TEST(Gathering, PicksWithinEachBatch)
{
    EXPECT_THAT(gather(table, integers({ 2, 2 }, { 2, 1, 0, 0 }), 1, 1), equals(reals({ 2, 2 }, { 2, 1, 3, 3 })));
    EXPECT_THAT(gather(table, integers({ 2 }, { 2, 0 }), 1, 1), equals(reals({ 2 }, { 2, 3 })));
    EXPECT_THAT(
        gather(counting({ 2, 2, 2 }), integers({ 2, 1 }, { 1, 0 }), 2, 1), equals(reals({ 2, 2, 1 }, { 1, 3, 4, 6 })));
}

TEST(Gathering, KeepsTheTypeOfTheElements)
{
    EXPECT_THAT(gather(integers({ 7, 8 }), integers({ 1 }), 0), equals(integers({ 8 })));
    EXPECT_THAT(gather(booleans({ 1, 0 }), integers({ 1 }), 0), equals(booleans({ 0 })));
}

TEST(Gathering, MayPickNothing)
{
    EXPECT_THAT(gather(table, integers({ 0 }, {}), 1), equals(reals({ 2, 0 }, {})));
    EXPECT_THAT(gather(reals({ 0, 3 }, {}), integers({ 0 }, {}), 0), equals(reals({ 0, 3 }, {})));
    EXPECT_THAT(gather(reals({ 2, 0 }, {}), integers({ 1 }), 0), equals(reals({ 1, 0 }, {})));
}

TEST(Gathering, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](Tensor x, Tensor indices, int axis, int batch) {
        return refusal("gather",
            { { "x", std::move(x) }, { "indices", std::move(indices) }, { "axis", axis }, { "batch_dims", batch } });
    };
    EXPECT_THAT(refused(table, reals({ 1 }), 0, 0), HasSubstr("integers"));
    EXPECT_THAT(refused(table, integers({ 1 }), 2, 0), HasSubstr("axis 2"));
    EXPECT_THAT(refused(reals({}, { 1 }), integers({ 0 }), 0, 0), HasSubstr("axis 0"));
    EXPECT_THAT(refused(table, integers({ 1, 1 }), 0, 1), HasSubstr("one of the batch"));
    EXPECT_THAT(refused(table, integers({ 1, 1, 1 }), 1, 1), HasSubstr("batch dimensions of its operands differ"));
    EXPECT_THAT(refused(table, integers({ 1, 1 }), 1, 2), HasSubstr("\"batch_dims\""));
    EXPECT_THAT(refused(table, integers({ 1, 1 }), 1, -1), HasSubstr("\"batch_dims\""));
    EXPECT_THAT(refused(reals({ 0 }, {}), integers({ 0 }), 0, 0), HasSubstr("empty"));
    EXPECT_THAT(refused(counting({ 1, 1, 1, 1, 1 }), integers({ 1, 1, 1, 1, 1 }, { 0 }), 0, 0),
        HasSubstr("too many dimensions"));
    EXPECT_THAT(
        refused(counting({ 1, 70000 }), Tensor({ ElementType::integer, { 70000 } }), 0, 0), HasSubstr("too large"));
}

TEST(GatheringAlongAxis, PicksOneElementForEachIndex)
{
    const auto along = [](Tensor indices, int axis) {
        return evaluate("gather_along_axis", { { "x", table }, { "indices", std::move(indices) }, { "axis", axis } });
    };
    EXPECT_THAT(along(integers({ 2, 2 }, { 2, 0, 1, -1 }), 1), equals(reals({ 2, 2 }, { 2, 0, 4, 5 })));
    EXPECT_THAT(along(integers({ 2, 1 }, { 99, -99 }), -1), equals(reals({ 2, 1 }, { 2, 3 })));
    EXPECT_THAT(evaluate("gather_along_axis", { { "x", table }, { "indices", integers({ 1, 3 }, { 1, 0, 1 }) } }),
        equals(reals({ 1, 3 }, { 3, 1, 5 })));
    EXPECT_THAT(along(integers({ 2, 0 }, {}), 1), equals(reals({ 2, 0 }, {})));
}

TEST(GatheringAlongAxis, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](Tensor x, Tensor indices) {
        return refusal("gather_along_axis", { { "x", std::move(x) }, { "indices", std::move(indices) } });
    };
    EXPECT_THAT(refused(table, integers({ 1 })), HasSubstr("more or fewer dimensions"));
    EXPECT_THAT(refused(table, integers({ 1, 2 }, { 0, 0 })), HasSubstr("differ in more dimensions"));
    EXPECT_THAT(refused(reals({ 0, 1 }, {}), integers({ 1, 1 }, { 0 })), HasSubstr("empty"));
}

TEST(GatheringTuples, PicksWhatEachTupleAddresses)
{
    EXPECT_THAT(gatherTuples(table, integers({ 2, 2 }, { 1, 2, 0, 1 })), equals(reals({ 5, 1 })));
    EXPECT_THAT(gatherTuples(table, integers({ 2, 1 }, { 1, 0 })), equals(reals({ 2, 3 }, { 3, 4, 5, 0, 1, 2 })));
    EXPECT_THAT(gatherTuples(table, integers({ 2 }, { 0, 2 })), equals(reals({}, { 2 })));
    EXPECT_THAT(gatherTuples(table, integers({ 1, 2 }, { -1, -99 })), equals(reals({ 3 })));
}

TEST(GatheringTuples, AnEmptyTupleAddressesEverything)
{
    EXPECT_THAT(gatherTuples(table, integers({ 2, 0 }, {})),
        equals(reals({ 2, 2, 3 }, { 0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5 })));
}

TEST(GatheringTuples, PicksWithinEachBatch)
{
    EXPECT_THAT(gatherTuples(table, integers({ 2, 1 }, { 2, 0 }), 1), equals(reals({ 2, 3 })));
    EXPECT_THAT(gatherTuples(counting({ 2, 2, 2 }), integers({ 2, 1, 1 }, { 1, 0 }), 1),
        equals(reals({ 2, 1, 2 }, { 2, 3, 4, 5 })));
}

TEST(GatheringTuples, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](Tensor x, Tensor indices, int batch) {
        return refusal(
            "gather_nd", { { "x", std::move(x) }, { "indices", std::move(indices) }, { "batch_dims", batch } });
    };
    EXPECT_THAT(refused(table, integers({ 1, 3 }, { 0, 0, 0 }), 0), HasSubstr("longer than there are dimensions"));
    EXPECT_THAT(refused(table, integers({ 2, 2 }, { 0, 0, 0, 0 }), 1), HasSubstr("longer than there are dimensions"));
    EXPECT_THAT(refused(table, integers({}, { 0 }), 0), HasSubstr("rank 0"));
    EXPECT_THAT(refused(table, integers({ 2 }, { 0, 0 }), 1), HasSubstr("\"batch_dims\""));
    EXPECT_THAT(refused(reals({ 0, 3 }, {}), integers({ 1, 1 }, { 0 }), 0), HasSubstr("empty"));
}
