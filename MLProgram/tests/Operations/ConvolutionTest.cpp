// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

// One image of one channel with the numbers 0, 1, 2, ...
Tensor line(int64_t length)
{
    return counting({ 1, 1, length });
}

Tensor ones(const Shape& shape)
{
    return reals(shape, std::vector<float>(static_cast<size_t>(elementCount(shape)), 1.0f));
}

Tensor convolved(Tensor x, Tensor weight, Arguments more = {})
{
    more.insert(more.end(), { { "x", std::move(x) }, { "weight", std::move(weight) } });
    return evaluate("conv", more);
}

std::string words(Tensor x, Tensor weight, Arguments more = {})
{
    more.insert(more.end(), { { "x", std::move(x) }, { "weight", std::move(weight) } });
    return refusal("conv", more);
}

} // namespace

TEST(Convolution, CorrelatesWithoutPaddingByDefault)
{
    EXPECT_THAT(convolved(line(5), reals({ 1, 1, 3 }, { 1, 2, 3 })), equals(reals({ 1, 1, 3 }, { 8, 14, 20 })));
    EXPECT_THAT(convolved(line(5), reals({ 1, 1, 3 }, { 1, 2, 3 }), { { "bias", reals({ 100 }) } }),
        equals(reals({ 1, 1, 3 }, { 108, 114, 120 })));
    EXPECT_THAT(convolved(counting({ 1, 1, 3, 3 }), reals({ 1, 1, 2, 2 }, { 1, 2, 3, 4 })),
        equals(reals({ 1, 1, 2, 2 }, { 27, 37, 57, 67 })));
    EXPECT_THAT(
        convolved(counting({ 1, 1, 2, 2, 2 }), ones({ 1, 1, 2, 2, 2 })), equals(reals({ 1, 1, 1, 1, 1 }, { 28 })));
}

TEST(Convolution, StridesAndDilates)
{
    EXPECT_THAT(convolved(line(6), ones({ 1, 1, 2 }), { { "strides", integers({ 2 }) } }),
        equals(reals({ 1, 1, 3 }, { 1, 5, 9 })));
    EXPECT_THAT(convolved(line(6), ones({ 1, 1, 2 }), { { "dilations", integers({ 3 }) } }),
        equals(reals({ 1, 1, 3 }, { 3, 5, 7 })));
    EXPECT_THAT(
        convolved(line(7), ones({ 1, 1, 2 }), { { "strides", integers({ 2 }) }, { "dilations", integers({ 3 }) } }),
        equals(reals({ 1, 1, 2 }, { 3, 7 })));
}

TEST(Convolution, CustomPaddingStandsForEachDimensionApart)
{
    EXPECT_THAT(convolved(line(3), ones({ 1, 1, 2 }), { { "pad_type", "custom" }, { "pad", integers({ 2, 1 }) } }),
        equals(reals({ 1, 1, 5 }, { 0, 0, 1, 3, 2 })));
    EXPECT_THAT(convolved(counting({ 1, 1, 2, 2 }), ones({ 1, 1, 1, 1 }),
                    { { "pad_type", "custom" }, { "pad", integers({ 1, 0, 0, 2 }) } }),
        equals(reals({ 1, 1, 3, 4 }, { 0, 0, 0, 0, 0, 1, 0, 0, 2, 3, 0, 0 })));
}

TEST(Convolution, PadIsIgnoredUnlessCustom)
{
    EXPECT_THAT(convolved(line(3), ones({ 1, 1, 2 }), { { "pad_type", "valid" }, { "pad", integers({ 2, 1 }) } }),
        equals(reals({ 1, 1, 2 }, { 1, 3 })));
    EXPECT_THAT(convolved(line(3), ones({ 1, 1, 3 }), { { "pad_type", "same" }, { "pad", integers({ 9, 9 }) } }),
        equals(reals({ 1, 1, 3 }, { 1, 3, 3 })));
}

TEST(Convolution, SamePaddingDependsOnSizeAndStride)
{
    const auto same = [](int64_t length, int64_t kernel, int stride, const char* type) {
        return convolved(
            line(length), ones({ 1, 1, kernel }), { { "pad_type", type }, { "strides", integers({ stride }) } });
    };
    // An odd total goes to the end, or to the beginning with same_lower.
    EXPECT_THAT(same(3, 2, 1, "same"), equals(reals({ 1, 1, 3 }, { 1, 3, 2 })));
    EXPECT_THAT(same(3, 2, 1, "same_lower"), equals(reals({ 1, 1, 3 }, { 0, 1, 3 })));
    // 4 by 2: total 1.  5 by 2: total 2.
    EXPECT_THAT(same(4, 3, 2, "same"), equals(reals({ 1, 1, 2 }, { 3, 5 })));
    EXPECT_THAT(same(5, 3, 2, "same"), equals(reals({ 1, 1, 3 }, { 1, 6, 7 })));
    EXPECT_THAT(same(4, 3, 2, "same_lower"), equals(reals({ 1, 1, 2 }, { 1, 6 })));
    EXPECT_THAT(same(5, 1, 2, "same"), equals(reals({ 1, 1, 3 }, { 0, 2, 4 })));
}

TEST(Convolution, GroupsSeeTheirOwnChannels)
{
    const Tensor x = reals({ 1, 4, 1 }, { 1, 2, 3, 4 });
    EXPECT_THAT(convolved(x, reals({ 2, 2, 1 }, { 1, 10, 1, 10 }), { { "groups", 2 } }),
        equals(reals({ 1, 2, 1 }, { 21, 43 })));
    EXPECT_THAT(convolved(x, reals({ 4, 1, 1 }, { 1, 2, 3, 4 }), { { "groups", 4 } }),
        equals(reals({ 1, 4, 1 }, { 1, 4, 9, 16 })));
    EXPECT_THAT(convolved(counting({ 2, 2, 1 }), reals({ 1, 2, 1 }, { 1, 1 })), equals(reals({ 2, 1, 1 }, { 1, 5 })));
}

TEST(Convolution, EmptyInputsGiveEmptyOutputs)
{
    EXPECT_THAT(convolved(counting({ 0, 1, 4 }), ones({ 2, 1, 3 })), equals(reals({ 0, 2, 2 }, {})));
    EXPECT_THAT(convolved(line(0), ones({ 1, 1, 1 })), equals(reals({ 1, 1, 0 }, {})));
    EXPECT_THAT(convolved(line(0), ones({ 1, 1, 3 }), { { "pad_type", "same" } }), equals(reals({ 1, 1, 0 }, {})));
}

TEST(Convolution, RefusesParametersThatDoNotFit)
{
    const Tensor kernel = ones({ 1, 1, 3 });
    EXPECT_THAT(words(line(5), kernel, { { "strides", integers({ 0 }) } }), HasSubstr("\"strides\""));
    EXPECT_THAT(words(line(5), kernel, { { "strides", integers({ 1, 1 }) } }), HasSubstr("\"strides\""));
    EXPECT_THAT(words(line(5), kernel, { { "dilations", integers({ -1 }) } }), HasSubstr("\"dilations\""));
    EXPECT_THAT(words(line(5), kernel, { { "pad", integers({ -1, 0 }) } }), HasSubstr("\"pad\""));
    EXPECT_THAT(words(line(5), kernel, { { "pad", integers({ 1 }) } }), HasSubstr("\"pad\""));
    EXPECT_THAT(words(line(5), kernel, { { "pad_type", "full" } }), HasSubstr("padding"));
    EXPECT_THAT(words(line(5), kernel, { { "groups", 0 } }), HasSubstr("groups"));
    EXPECT_THAT(words(line(5), kernel, { { "groups", 2 } }), HasSubstr("groups"));
    EXPECT_THAT(words(line(5), kernel, { { "bias", reals({ 1, 2 }) } }), HasSubstr("\"bias\""));
    EXPECT_THAT(words(line(5), ones({ 1, 2, 3 })), HasSubstr("channels"));
    EXPECT_THAT(words(line(1), kernel), HasSubstr("larger than the padded input"));
    EXPECT_THAT(words(line(5), counting({ 1, 1, 0 })), HasSubstr("size"));
    EXPECT_THAT(words(line(5), ones({ 1, 1, 2 }), { { "dilations", integers({ INT32_MAX }) } }), HasSubstr("size"));
    EXPECT_THAT(words(line(5), ones({ 1, 1, 1, 1 })), HasSubstr("rank 4"));
    EXPECT_THAT(words(counting({ 1, 1 }), ones({ 1, 1 })), HasSubstr("rank 2"));
    EXPECT_THAT(words(line(5), kernel, { { "pad_type", "custom" }, { "pad", integers({ INT32_MAX, INT32_MAX }) } }),
        HasSubstr("too large"));
}
