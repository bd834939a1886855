// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/OperationTester.h"

using namespace MLProgram;
using testing::HasSubstr;

namespace {

Arguments spreading(Tensor x, Tensor weight, Arguments more)
{
    more.insert(more.end(), { { "x", std::move(x) }, { "weight", std::move(weight) } });
    return more;
}

Tensor spread(std::vector<float> x, std::vector<float> kernel, Arguments more = {})
{
    const Shape shape { 1, 1, static_cast<int64_t>(x.size()) };
    const Shape kernelShape { 1, 1, static_cast<int64_t>(kernel.size()) };
    return evaluate("conv_transpose", spreading(reals(shape, x), reals(kernelShape, kernel), std::move(more)));
}

Tensor line(std::vector<float> values)
{
    return reals({ 1, 1, static_cast<int64_t>(values.size()) }, values);
}

} // namespace

TEST(TransposedConvolution, SpreadsEachElement)
{
    EXPECT_THAT(spread({ 1, 2 }, { 1, 10, 100 }), equals(line({ 1, 12, 120, 200 })));
    EXPECT_THAT(
        spread({ 1, 2 }, { 1, 10, 100 }, { { "strides", integers({ 2 }) } }), equals(line({ 1, 10, 102, 20, 200 })));
    EXPECT_THAT(spread({ 1, 2 }, { 1, 10 }, { { "dilations", integers({ 2 }) } }), equals(line({ 1, 2, 10, 20 })));
    EXPECT_THAT(spread({ 1, 2 }, { 1, 10 }, { { "strides", integers({ 3 }) }, { "bias", reals({ 5 }) } }),
        equals(line({ 6, 15, 5, 7, 25 })));
}

TEST(TransposedConvolution, CropsByItsPadding)
{
    EXPECT_THAT(spread({ 1, 2 }, { 1, 10, 100 }, { { "pad_type", "custom" }, { "pad", integers({ 1, 2 }) } }),
        equals(line({ 12 })));
    // Same: 2 * 2 elements are left of 5; what goes first is cut at the end, or at the beginning with same_lower.
    EXPECT_THAT(spread({ 1, 2 }, { 1, 10, 100 }, { { "strides", integers({ 2 }) }, { "pad_type", "same" } }),
        equals(line({ 1, 10, 102, 20 })));
    EXPECT_THAT(spread({ 1, 2 }, { 1, 10, 100 }, { { "strides", integers({ 2 }) }, { "pad_type", "same_lower" } }),
        equals(line({ 10, 102, 20, 200 })));
}

TEST(TransposedConvolution, AnOutputShapeAddsAtTheEnd)
{
    const Arguments custom { { "strides", integers({ 2 }) }, { "pad_type", "custom" }, { "pad", integers({ 1, 1 }) },
        { "bias", reals({ 7 }) } };
    EXPECT_THAT(spread({ 1, 2 }, { 1, 10, 100 }, custom), equals(line({ 17, 109, 27 })));
    Arguments longer = custom;
    longer.emplace_back("output_shape", integers({ 1, 1, 4 }));
    EXPECT_THAT(spread({ 1, 2 }, { 1, 10, 100 }, longer), equals(line({ 17, 109, 27, 207 })));
    longer.back().second = integers({ 1, 1, 6 });
    EXPECT_THAT(spread({ 1, 2 }, { 1, 10, 100 }, longer), equals(line({ 17, 109, 27, 207, 7, 7 })));
}

TEST(TransposedConvolution, WorksInTwoDimensionsAndGroups)
{
    EXPECT_THAT(evaluate("conv_transpose",
                    spreading(reals({ 1, 1, 1, 2 }, { 1, 2 }), reals({ 1, 1, 2, 2 }, { 1, 10, 100, 1000 }), {})),
        equals(reals({ 1, 1, 2, 3 }, { 1, 12, 20, 100, 1200, 2000 })));
    // Two groups of one input and two outputs each.
    EXPECT_THAT(evaluate("conv_transpose",
                    spreading(reals({ 1, 2, 1 }, { 1, 10 }), reals({ 2, 2, 1 }, { 1, 2, 3, 4 }), { { "groups", 2 } })),
        equals(reals({ 1, 4, 1 }, { 1, 2, 30, 40 })));
    // One group of two inputs and one output.
    EXPECT_THAT(evaluate("conv_transpose", spreading(reals({ 1, 2, 1 }, { 1, 10 }), reals({ 2, 1, 1 }, { 1, 2 }), {})),
        equals(reals({ 1, 1, 1 }, { 21 })));
}

TEST(TransposedConvolution, AnEmptyInputGivesAnEmptyOutput)
{
    EXPECT_THAT(spread({}, { 1, 10 }, { { "strides", integers({ 2 }) } }), equals(line({})));
}

TEST(TransposedConvolution, RefusesParametersThatDoNotFit)
{
    const auto words = [](Arguments more) {
        return refusal("conv_transpose", spreading(counting({ 1, 1, 2 }), counting({ 1, 1, 3 }), std::move(more)));
    };
    EXPECT_THAT(words({ { "groups", -1 } }), HasSubstr("group"));
    EXPECT_THAT(words({ { "groups", 3 } }), HasSubstr("groups"));
    EXPECT_THAT(words({ { "strides", integers({ 0 }) } }), HasSubstr("\"strides\""));
    EXPECT_THAT(words({ { "pad_type", "custom" }, { "pad", integers({ 3, 3 }) } }), HasSubstr("larger"));
    EXPECT_THAT(words({ { "output_shape", integers({ 1, 2, 4 }) } }), HasSubstr("channels"));
    EXPECT_THAT(words({ { "output_shape", integers({ 4 }) } }), HasSubstr("rank"));
    EXPECT_THAT(words({ { "output_shape", integers({ 1, 1, -4 }) } }), HasSubstr("negative"));
    EXPECT_THAT(words({ { "dilations", integers({ INT32_MAX }) } }), HasSubstr("size"));
}
