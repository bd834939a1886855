// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Arguments with(Arguments arguments, const Arguments& more)
{
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

// Windows of three over one channel of 1 2 3 4 5.
const Arguments threes = { { "x", reals({ 1, 1, 5 }, { 1, 2, 3, 4, 5 }) }, { "kernel_sizes", integers({ 3 }) } };

Tensor row(const std::vector<float>& values)
{
    return reals({ 1, 1, static_cast<int64_t>(values.size()) }, values);
}

Tensor maxima(const Arguments& more)
{
    return evaluate("max_pool", with(threes, more));
}

Tensor averages(const Arguments& more)
{
    return evaluate("avg_pool", with(threes, more));
}

} // namespace

TEST(Pooling, StaysInsideTheInputByDefault)
{
    EXPECT_THAT(maxima({}), equals(row({ 3, 4, 5 })));
    EXPECT_THAT(averages({}), equals(row({ 2, 3, 4 })));
    EXPECT_THAT(maxima({ { "pad", integers({ 1, 1 }) } }), equals(row({ 3, 4, 5 })));
}

TEST(Pooling, TakesTheNormOfEachWindow)
{
    EXPECT_THAT(evaluate("l2_pool", { { "x", row({ 3, 4, 0, -5, 12 }) }, { "kernel_sizes", integers({ 2 }) } }),
        equals(row({ 5, 4, 5, 13 })));
}

TEST(Pooling, StepsByItsStride)
{
    EXPECT_THAT(maxima({ { "strides", integers({ 2 }) } }), equals(row({ 3, 5 })));
    EXPECT_THAT(maxima({ { "strides", integers({ 3 }) } }), equals(row({ 3 })));
}

TEST(Pooling, PadsAsToldBeforeAndAfter)
{
    const Arguments custom = { { "pad_type", "custom" }, { "pad", integers({ 2, 1 }) } };
    EXPECT_THAT(maxima(custom), equals(row({ 1, 2, 3, 4, 5, 5 })));
    EXPECT_THAT(averages(custom), isNear(row({ 1 / 3.0f, 1, 2, 3, 4, 3 })));
    EXPECT_THAT(
        averages(with(custom, { { "exclude_padding_from_average", true } })), equals(row({ 1, 1.5f, 2, 3, 4, 4.5f })));
}

TEST(Pooling, PaddingIsNeverTheMaximum)
{
    EXPECT_THAT(evaluate("max_pool",
                    { { "x", row({ -5, -7 }) }, { "kernel_sizes", integers({ 2 }) }, { "pad_type", "custom" },
                        { "pad", integers({ 1, 1 }) } }),
        equals(row({ -5, -5, -7 })));
}

TEST(Pooling, WindowsThatLieInThePaddingHaveNothingToPool)
{
    const Arguments wide = { { "x", row({ 3 }) }, { "kernel_sizes", integers({ 1 }) }, { "pad_type", "custom" },
        { "pad", integers({ 1, 1 }) }, { "exclude_padding_from_average", true } };
    EXPECT_THAT(evaluate("max_pool", wide), equals(row({ -infinity, 3, -infinity })));
    EXPECT_THAT(evaluate("avg_pool", wide), equals(row({ 0, 3, 0 })));
}

TEST(Pooling, SamePaddingGivesOneOutputForEachStride)
{
    EXPECT_THAT(maxima({ { "pad_type", "same" } }), equals(row({ 2, 3, 4, 5, 5 })));
    const auto pairs = [](const char* padType) {
        return evaluate(
            "max_pool", { { "x", row({ 5, 4, 3, 2 }) }, { "kernel_sizes", integers({ 2 }) }, { "pad_type", padType } });
    };
    EXPECT_THAT(pairs("same"), equals(row({ 5, 4, 3, 2 })));
    EXPECT_THAT(pairs("same_lower"), equals(row({ 5, 5, 4, 3 })));
    EXPECT_THAT(maxima({ { "pad_type", "same" }, { "strides", integers({ 4 }) } }), equals(row({ 2, 5 })));
}

TEST(Pooling, KeepsPartialWindowsInCeilMode)
{
    const Arguments wide = { { "strides", integers({ 4 }) }, { "ceil_mode", true } };
    EXPECT_THAT(maxima(wide), equals(row({ 3, 5 })));
    EXPECT_THAT(averages(wide), isNear(row({ 2, 5 / 3.0f })));
    EXPECT_THAT(maxima({ { "strides", integers({ 2 }) }, { "ceil_mode", true } }), equals(row({ 3, 5 })));
}

TEST(Pooling, DropsPartialWindowsThatHoldPaddingOnly)
{
    // Windows of two at 0 and 6 of the padded input, whose places 1 to 5 are real.
    const Arguments edges
        = { { "x", row({ 1, 2, 3, 4, 5 }) }, { "kernel_sizes", integers({ 2 }) }, { "strides", integers({ 6 }) },
              { "pad_type", "custom" }, { "pad", integers({ 1, 1 }) }, { "ceil_mode", true } };
    EXPECT_THAT(evaluate("max_pool", edges), equals(row({ 1 })));
}

TEST(Pooling, WorksInTwoAndThreeDimensions)
{
    EXPECT_THAT(evaluate("max_pool", { { "x", counting({ 1, 2, 3, 3 }) }, { "kernel_sizes", integers({ 2, 2 }) } }),
        equals(reals({ 1, 2, 2, 2 }, { 4, 5, 7, 8, 13, 14, 16, 17 })));
    EXPECT_THAT(
        evaluate("avg_pool", { { "x", counting({ 2, 1, 2, 2, 2 }) }, { "kernel_sizes", integers({ 2, 2, 2 }) } }),
        equals(reals({ 2, 1, 1, 1, 1 }, { 3.5f, 11.5f })));
    EXPECT_THAT(
        evaluate("max_pool",
            { { "x", counting({ 1, 1, 2, 3 }) }, { "kernel_sizes", integers({ 1, 2 }) },
                { "strides", integers({ 2, 1 }) }, { "pad_type", "custom" }, { "pad", integers({ 0, 1, 1, 0 }) } }),
        equals(reals({ 1, 1, 2, 3 }, { 0, 1, 2, -infinity, -infinity, -infinity })));
}

TEST(Pooling, TakesEmptyTensors)
{
    EXPECT_THAT(evaluate("max_pool", { { "x", row({}) }, { "kernel_sizes", integers({ 1 }) } }), equals(row({})));
    EXPECT_THAT(evaluate("avg_pool", { { "x", reals({ 0, 2, 3 }, {}) }, { "kernel_sizes", integers({ 3 }) } }),
        equals(reals({ 0, 2, 1 }, {})));
}

TEST(Pooling, RefusesOperandsThatDoNotFit)
{
    const auto refused = [](const char* name, const Argument& argument) {
        Arguments arguments = threes;
        std::erase_if(arguments, [&](const auto& known) { return known.first == name; });
        return refusal("max_pool", with(arguments, { { "pad_type", "custom" }, { name, argument } }));
    };
    EXPECT_THAT(refused("x", reals({ 1, 5 }, { 1, 2, 3, 4, 5 })), HasSubstr("one to three spatial dimensions"));
    EXPECT_THAT(refused("x", counting({ 1, 1, 1, 1, 1, 1 })), HasSubstr("one to three spatial dimensions"));
    EXPECT_THAT(refused("x", integers({ 1, 1, 1 }, { 1 })), HasSubstr("real numbers"));
    EXPECT_THAT(refused("kernel_sizes", integers({ 3, 3 })), HasSubstr("spatial dimensions"));
    EXPECT_THAT(refused("kernel_sizes", integers({ 0 })), HasSubstr("unusable size"));
    EXPECT_THAT(refused("strides", integers({ 0 })), HasSubstr("\"strides\""));
    EXPECT_THAT(refused("strides", integers({ 1, 1 })), HasSubstr("\"strides\""));
    EXPECT_THAT(refused("pad", integers({ 1 })), HasSubstr("\"pad\""));
    EXPECT_THAT(refused("pad", integers({ 1, -1 })), HasSubstr("\"pad\""));
    EXPECT_THAT(refused("pad", integers({ INT32_MAX, INT32_MAX })), HasSubstr("too large"));
    EXPECT_THAT(refusal("max_pool", with(threes, { { "pad_type", "mirror" } })), HasSubstr("padding is unknown"));
    EXPECT_THAT(refused("kernel_sizes", integers({ 9 })), HasSubstr("larger than the padded input"));
    EXPECT_THAT(refused("kernel_sizes", integers({ 1, 1, 1, 1 })), HasSubstr("\"kernel_sizes\""));
}
