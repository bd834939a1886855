// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Tensor scatter(Tensor data, Tensor indices, Tensor updates, const char* mode)
{
    return evaluate("scatter",
        { { "data", std::move(data) }, { "indices", std::move(indices) }, { "updates", std::move(updates) },
            { "mode", mode } });
}

} // namespace

TEST(Scattering, AddsToRowsByDefault)
{
    EXPECT_THAT(evaluate("scatter",
                    { { "data", counting({ 3, 2 }) }, { "indices", integers({ 2, 0 }) },
                        { "updates", reals({ 2, 2 }, { 10, 20, 30, 40 }) } }),
        equals(reals({ 3, 2 }, { 30, 41, 2, 3, 14, 25 })));
}

TEST(Scattering, WorksAlongAnyAxis)
{
    const auto alongLast = [](int axis) {
        return evaluate("scatter",
            { { "data", counting({ 2, 3 }) }, { "indices", integers({ 1 }) },
                { "updates", reals({ 2, 1 }, { 10, 20 }) }, { "axis", axis }, { "mode", "update" } });
    };
    EXPECT_THAT(alongLast(1), equals(reals({ 2, 3 }, { 0, 10, 2, 3, 20, 5 })));
    EXPECT_THAT(alongLast(-1), equals(reals({ 2, 3 }, { 0, 10, 2, 3, 20, 5 })));
}

TEST(Scattering, UpdatesInEveryMode)
{
    const auto met = [](const char* mode) { return scatter(reals({ 6, 2 }), integers({ 0 }), reals({ 4 }), mode); };
    EXPECT_THAT(met("update"), equals(reals({ 4, 2 })));
    EXPECT_THAT(met("add"), equals(reals({ 10, 2 })));
    EXPECT_THAT(met("sub"), equals(reals({ 2, 2 })));
    EXPECT_THAT(met("mul"), equals(reals({ 24, 2 })));
    EXPECT_THAT(met("div"), equals(reals({ 1.5f, 2 })));
    EXPECT_THAT(met("max"), equals(reals({ 6, 2 })));
    EXPECT_THAT(met("min"), equals(reals({ 4, 2 })));
}

TEST(Scattering, WrapsIntegersAndSurvivesTheirDivisionByZero)
{
    const auto met = [](const char* mode, int32_t old, int32_t update) {
        return scatter(integers({ old }), integers({ 0 }), integers({ update }), mode);
    };
    EXPECT_THAT(met("update", 6, 4), equals(integers({ 4 })));
    EXPECT_THAT(met("add", INT32_MAX, 1), equals(integers({ INT32_MIN })));
    EXPECT_THAT(met("sub", INT32_MIN, 1), equals(integers({ INT32_MAX })));
    EXPECT_THAT(met("mul", 65536, 65536), equals(integers({ 0 })));
    EXPECT_THAT(met("div", -7, 2), equals(integers({ -3 })));
    EXPECT_THAT(met("div", INT32_MIN, -1), equals(integers({ INT32_MIN })));
    EXPECT_THAT(met("div", 5, 0), equals(integers({ 0 })));
    EXPECT_THAT(met("max", 6, 4), equals(integers({ 6 })));
    EXPECT_THAT(met("min", 6, 4), equals(integers({ 4 })));
}

TEST(Scattering, AppliesRepeatedIndicesInOrder)
{
    EXPECT_THAT(scatter(reals({ 1 }), integers({ 0, 0 }), reals({ 2, 3 }), "add"), equals(reals({ 6 })));
    EXPECT_THAT(scatter(reals({ 1 }), integers({ 0, 0 }), reals({ 2, 3 }), "update"), equals(reals({ 3 })));
}

TEST(Scattering, WrapsNegativeIndicesAndHoldsOthersToTheEdge)
{
    EXPECT_THAT(scatter(reals({ 0, 0, 0 }), integers({ -1, INT32_MIN, INT32_MAX }), reals({ 1, 2, 4 }), "add"),
        equals(reals({ 2, 0, 5 })));
}

TEST(Scattering, MayChangeNothing)
{
    EXPECT_THAT(scatter(reals({ 1, 2 }), integers({ 0 }, {}), reals({ 0 }, {}), "add"), equals(reals({ 1, 2 })));
    EXPECT_THAT(scatter(reals({ 0 }, {}), integers({ 0 }, {}), reals({ 0 }, {}), "add"), equals(reals({ 0 }, {})));
}

TEST(Scattering, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](Tensor data, Tensor indices, Tensor updates, const char* mode) {
        return refusal("scatter",
            { { "data", std::move(data) }, { "indices", std::move(indices) }, { "updates", std::move(updates) },
                { "mode", mode } });
    };
    EXPECT_THAT(refused(reals({ 1 }), integers({ 0 }), reals({ 1 }), "xor"), HasSubstr("the mode \"xor\" is unknown"));
    EXPECT_THAT(refused(reals({ 1 }), integers({ 0 }), integers({ 1 }), "add"), HasSubstr("one type"));
    EXPECT_THAT(refused(booleans({ 1 }), integers({ 0 }), booleans({ 1 }), "add"), HasSubstr("numbers"));
    EXPECT_THAT(refused(reals({ 1 }), integers({ 0 }), reals({ 1, 2 }), "add"), HasSubstr("shape"));
    EXPECT_THAT(refused(reals({ 1 }), reals({ 0 }), reals({ 1 }), "add"), HasSubstr("integers"));
    EXPECT_THAT(refused(reals({}, { 1 }), integers({ 0 }), reals({ 1 }), "add"), HasSubstr("axis 0"));
    EXPECT_THAT(refused(reals({ 0 }, {}), integers({ 0 }), reals({ 1 }), "add"), HasSubstr("empty"));
}

TEST(ScatteringAlongAxis, ChangesOneElementForEachIndex)
{
    const auto along = [](Tensor indices, Tensor updates, int axis) {
        return evaluate("scatter_along_axis",
            { { "data", counting({ 2, 3 }) }, { "indices", std::move(indices) }, { "updates", std::move(updates) },
                { "axis", axis }, { "mode", "update" } });
    };
    EXPECT_THAT(along(integers({ 2, 1 }, { 2, -3 }), reals({ 2, 1 }, { 10, 20 }), 1),
        equals(reals({ 2, 3 }, { 0, 1, 10, 20, 4, 5 })));
    EXPECT_THAT(along(integers({ 1, 3 }, { 1, 0, 99 }), reals({ 1, 3 }, { 10, 20, 30 }), -2),
        equals(reals({ 2, 3 }, { 0, 20, 2, 10, 4, 30 })));
}

TEST(ScatteringAlongAxis, AddsToTheFirstDimensionByDefault)
{
    EXPECT_THAT(
        evaluate("scatter_along_axis",
            { { "data", integers({ 1, 2 }) }, { "indices", integers({ 1, 1 }) }, { "updates", integers({ 10, 20 }) } }),
        equals(integers({ 1, 32 })));
}

TEST(ScatteringAlongAxis, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](Tensor indices, Tensor updates) {
        return refusal("scatter_along_axis",
            { { "data", counting({ 2, 3 }) }, { "indices", std::move(indices) }, { "updates", std::move(updates) } });
    };
    EXPECT_THAT(refused(integers({ 1, 2 }, { 0, 0 }), counting({ 1, 2 })), HasSubstr("differ in more dimensions"));
    EXPECT_THAT(refused(integers({ 1, 3 }, { 0, 0, 0 }), counting({ 2, 3 })), HasSubstr("\"updates\""));
}

TEST(ScatteringTuples, ChangesWhatEachTupleAddresses)
{
    const auto scatterTuples = [](Tensor indices, Tensor updates) {
        return evaluate("scatter_nd",
            { { "data", counting({ 2, 3 }) }, { "indices", std::move(indices) }, { "updates", std::move(updates) } });
    };
    EXPECT_THAT(scatterTuples(integers({ 2, 2 }, { 1, 2, 0, -3 }), reals({ 10, 20 })),
        equals(reals({ 2, 3 }, { 20, 1, 2, 3, 4, 15 })));
    EXPECT_THAT(scatterTuples(integers({ 1, 1 }, { 9 }), reals({ 1, 3 }, { 10, 20, 30 })),
        equals(reals({ 2, 3 }, { 0, 1, 2, 13, 24, 35 })));
    EXPECT_THAT(
        scatterTuples(integers({ 2 }, { 0, 1 }), reals({}, { 10 })), equals(reals({ 2, 3 }, { 0, 11, 2, 3, 4, 5 })));
}

TEST(ScatteringTuples, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](Tensor indices, Tensor updates) {
        return refusal("scatter_nd",
            { { "data", counting({ 2, 3 }) }, { "indices", std::move(indices) }, { "updates", std::move(updates) } });
    };
    EXPECT_THAT(refused(integers({ 1, 3 }, { 0, 0, 0 }), reals({ 1 })), HasSubstr("longer"));
    EXPECT_THAT(refused(integers({ 1, 1 }, { 0 }), reals({ 1 })), HasSubstr("\"updates\""));
    EXPECT_THAT(refused(integers({}, { 0 }), reals({ 1 })), HasSubstr("rank 0"));
}
