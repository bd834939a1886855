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

Tensor along(const char* operation, Tensor x, std::vector<int32_t> axes, bool keep = false)
{
    return evaluate(operation, { { "x", std::move(x) }, { "axes", integers(axes) }, { "keep_dims", keep } });
}

} // namespace

TEST(Reductions, CoverAllAxesByDefault)
{
    const Tensor x = reals({ 2, 2 }, { 1, -2, 3, 4 });
    EXPECT_THAT(of("reduce_sum", x), equals(reals({}, { 6 })));
    EXPECT_THAT(of("reduce_mean", x), equals(reals({}, { 1.5f })));
    EXPECT_THAT(of("reduce_max", x), equals(reals({}, { 4 })));
    EXPECT_THAT(of("reduce_min", x), equals(reals({}, { -2 })));
    EXPECT_THAT(of("reduce_prod", x), equals(reals({}, { -24 })));
    EXPECT_THAT(of("reduce_sum_square", x), equals(reals({}, { 30 })));
    EXPECT_THAT(of("reduce_l1_norm", x), equals(reals({}, { 10 })));
    EXPECT_THAT(of("reduce_l2_norm", reals({ 3, 4 })), equals(reals({}, { 5 })));
    EXPECT_THAT(of("reduce_log_sum", x), isNear(reals({}, { 1.7917595f })));
    EXPECT_THAT(of("reduce_log_sum_exp", reals({ 0, 0 })), isNear(reals({}, { 0.6931472f })));
}

TEST(Reductions, FollowTheirAxes)
{
    const Tensor x = counting({ 2, 3, 2 });
    EXPECT_THAT(along("reduce_sum", x, { 1 }), equals(reals({ 2, 2 }, { 6, 9, 24, 27 })));
    EXPECT_THAT(along("reduce_sum", x, { -1 }), equals(reals({ 2, 3 }, { 1, 5, 9, 13, 17, 21 })));
    EXPECT_THAT(along("reduce_sum", x, { 0, 2 }), equals(reals({ 3 }, { 14, 22, 30 })));
    EXPECT_THAT(along("reduce_max", x, { 2, 0 }), equals(reals({ 3 }, { 7, 9, 11 })));
    EXPECT_THAT(along("reduce_sum", x, { 0, 2 }, true), equals(reals({ 1, 3, 1 }, { 14, 22, 30 })));
    EXPECT_THAT(along("reduce_mean", x, { 0, 1, 2 }, true), equals(reals({ 1, 1, 1 }, { 5.5f })));
}

TEST(Reductions, WorkOnIntegers)
{
    const Tensor x = integers({ -7, 2, 2 });
    EXPECT_THAT(of("reduce_sum", x), equals(integers({}, { -3 })));
    EXPECT_THAT(of("reduce_mean", integers({ -7, 2 })), equals(integers({}, { -2 })));
    EXPECT_THAT(of("reduce_max", x), equals(integers({}, { 2 })));
    EXPECT_THAT(of("reduce_min", x), equals(integers({}, { -7 })));
    EXPECT_THAT(of("reduce_prod", x), equals(integers({}, { -28 })));
    EXPECT_THAT(of("reduce_sum_square", x), equals(integers({}, { 57 })));
    EXPECT_THAT(of("reduce_l1_norm", x), equals(integers({}, { 11 })));
    EXPECT_THAT(of("reduce_sum", integers({ INT32_MAX, 1 })), equals(integers({}, { INT32_MIN })));
    EXPECT_THAT(of("reduce_mean", integers({ INT32_MAX, INT32_MAX })), equals(integers({}, { INT32_MAX })));
    EXPECT_THAT(refusal("reduce_l2_norm", { { "x", x } }), HasSubstr("real"));
    EXPECT_THAT(refusal("reduce_sum", { { "x", true } }), HasSubstr("numbers"));
}

TEST(Reductions, LogOfExponentialsIsStable)
{
    EXPECT_THAT(of("reduce_log_sum_exp", reals({ 1000, 1000 })), isNear(reals({}, { 1000.6931f })));
    EXPECT_THAT(of("reduce_log_sum_exp", reals({ -infinity, -infinity })), equals(reals({}, { -infinity })));
    EXPECT_THAT(of("reduce_log_sum_exp", reals({ infinity, 0 })), equals(reals({}, { infinity })));
}

TEST(Reductions, KnowWhatNothingGives)
{
    const Tensor none = counting({ 2, 0 });
    EXPECT_THAT(along("reduce_sum", none, { 1 }), equals(reals({ 0, 0 })));
    EXPECT_THAT(along("reduce_prod", none, { 1 }), equals(reals({ 1, 1 })));
    EXPECT_THAT(along("reduce_max", none, { 1 }), equals(reals({ -infinity, -infinity })));
    EXPECT_THAT(along("reduce_min", none, { 1 }), equals(reals({ infinity, infinity })));
    EXPECT_THAT(along("reduce_mean", none, { 1 }), equals(reals({ notANumber, notANumber })));
    EXPECT_THAT(along("reduce_mean", integers({ 1, 0 }, {}), { 1 }), equals(integers({ 0 })));
    EXPECT_THAT(along("reduce_sum", none, { 0 }), equals(reals({ 0 }, {})));
    EXPECT_THAT(along("reduce_sum", counting({ 2 }), {}), equals(reals({ 0, 1 })));
}

TEST(Reductions, NaNWins)
{
    EXPECT_THAT(of("reduce_max", reals({ 1, notANumber, 3 })), equals(reals({}, { notANumber })));
    EXPECT_THAT(of("reduce_min", reals({ notANumber, 1 })), equals(reals({}, { notANumber })));
}

TEST(Reductions, RefuseAxesThatAreNotThere)
{
    EXPECT_THAT(refusal("reduce_sum", { { "x", counting({ 2 }) }, { "axes", integers({ 1 }) } }), HasSubstr("axis 1"));
    EXPECT_THAT(
        refusal("reduce_sum", { { "x", counting({ 2 }) }, { "axes", integers({ 0, -1 }) } }), HasSubstr("twice"));
}
