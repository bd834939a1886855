// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AllocationCount.h"
#include "Plan/FunctionBuilder.h"
#include "Plan/PlanTesting.h"

namespace MLProgram {

namespace {

TEST(Plan, PutsBiasActivationAndResidualIntoTheProduct)
{
    FunctionBuilder builder;
    const ValueIndex x = builder.input({ 1, 20, 32 });
    const ValueIndex y = builder.add("linear",
        { { "x", { x } }, { "weight", { builder.weight({ 32, 32 }) } }, { "bias", { builder.weight({ 32 }) } } });
    const ValueIndex active = builder.add("silu", { { "x", { y } } });
    const ValueIndex scaled = builder.add("mul", { { "x", { active } }, { "y", { builder.number(0.5f) } } });
    const ValueIndex sum = builder.add("add", { { "x", { x } }, { "y", { scaled } } });
    const Function function = builder.finish({ sum });
    EXPECT_EQ(planOf(function)->plan->stepCount(), 1U);
    expectPlanAgreesWithInterpreter(function);
}

TEST(Plan, ComputesChannelsFirstConvolutionsWithoutCopiesBetweenThem)
{
    FunctionBuilder builder;
    const ValueIndex x = builder.input({ 1, 24, 1, 30 });
    ValueIndex y = builder.add("conv", { { "x", { x } }, { "weight", { builder.weight({ 48, 24, 1, 1 }, 0.2f) } } });
    const auto halves = builder.addWithOutputs(
        "split", { { "x", { y } }, { "axis", { builder.integer(1) } }, { "num_splits", { builder.integer(2) } } });
    const ValueIndex gate = builder.add("sigmoid", { { "x", { halves[1] } } });
    y = builder.add("mul", { { "x", { halves[0] } }, { "y", { gate } } });
    y = builder.add("conv",
        { { "x", { y } }, { "weight", { builder.weight({ 24, 1, 1, 9 }) } }, { "groups", { builder.integer(24) } },
            { "pad_type", { builder.text("custom") } }, { "pad", { builder.integers({ 0, 0, 4, 4 }) } } });
    y = builder.add("conv", { { "x", { y } }, { "weight", { builder.weight({ 24, 24, 1, 1 }, 0.2f) } } });
    const Function function = builder.finish({ y });
    // One copy at either border, two products, the gate, the depthwise convolution.
    EXPECT_EQ(planOf(function)->plan->stepCount(), 6U);
    expectPlanAgreesWithInterpreter(function);
}

// Heads are cut from the channels, and joined again, without a copy; scale and mask go into the softmax.
Function attention(bool isChannelsFirst)
{
    constexpr int heads = 3, width = 8, frames = 20;
    FunctionBuilder builder;
    const ValueIndex x = isChannelsFirst ? builder.input({ 1, heads * width, 1, frames })
                                         : builder.input({ 1, frames, heads * width });
    const ValueIndex mask = builder.input({ 1, 1, 1, frames });
    const auto project = [&](ValueIndex from) {
        const ValueIndex weight = builder.weight(
            isChannelsFirst ? Shape { heads * width, heads * width, 1, 1 } : Shape { heads * width, heads * width },
            0.3f);
        return builder.add(isChannelsFirst ? "conv" : "linear", { { "x", { from } }, { "weight", { weight } } });
    };
    const auto split = [&](ValueIndex from) {
        if (isChannelsFirst)
            return builder.add(
                "reshape", { { "x", { from } }, { "shape", { builder.integers({ 1, heads, width, frames }) } } });
        const ValueIndex cut = builder.add(
            "reshape", { { "x", { from } }, { "shape", { builder.integers({ 1, frames, heads, width }) } } });
        return builder.add("transpose", { { "x", { cut } }, { "perm", { builder.integers({ 0, 2, 1, 3 }) } } });
    };
    const auto multiply = [&](ValueIndex a, ValueIndex b, bool turnsA, bool turnsB) {
        return builder.add("matmul",
            { { "x", { a } }, { "y", { b } }, { "transpose_x", { builder.flag(turnsA) } },
                { "transpose_y", { builder.flag(turnsB) } } });
    };
    const ValueIndex query = split(project(x));
    const ValueIndex key = split(project(x));
    const ValueIndex value = split(project(x));
    ValueIndex scores = multiply(query, key, isChannelsFirst, !isChannelsFirst);
    scores = builder.add("mul", { { "x", { scores } }, { "y", { builder.number(0.35f) } } });
    scores = builder.add("add", { { "x", { scores } }, { "y", { mask } } });
    const ValueIndex weights = builder.add("softmax", { { "x", { scores } } });
    ValueIndex mixed = isChannelsFirst ? multiply(value, weights, false, true) : multiply(weights, value, false, false);
    if (!isChannelsFirst)
        mixed = builder.add("transpose", { { "x", { mixed } }, { "perm", { builder.integers({ 0, 2, 1, 3 }) } } });
    const ValueIndex shape = isChannelsFirst ? builder.integers({ 1, heads * width, 1, frames })
                                             : builder.integers({ 1, frames, heads * width });
    const ValueIndex joined = builder.add("reshape", { { "x", { mixed } }, { "shape", { shape } } });
    return builder.finish({ project(joined) });
}

TEST(Plan, ComputesAttentionOfEitherLayoutWithoutInnerCopies)
{
    // Four projections, two products, one softmax; channels first also a copy at either border.
    EXPECT_EQ(planOf(attention(false))->plan->stepCount(), 7U);
    EXPECT_EQ(planOf(attention(true))->plan->stepCount(), 9U);
    expectPlanAgreesWithInterpreter(attention(false));
    expectPlanAgreesWithInterpreter(attention(true));
}

TEST(Plan, ShiftsRelativePositionsByViews)
{
    constexpr int heads = 2, frames = 7, positions = 2 * frames - 1;
    FunctionBuilder builder;
    const ValueIndex x = builder.input({ 1, heads, frames, positions });
    ValueIndex y = builder.add(
        "pad", { { "x", { x } }, { "pad", { builder.integers({ 1, 0 }) } }, { "mode", { builder.text("constant") } } });
    y = builder.add(
        "reshape", { { "x", { y } }, { "shape", { builder.integers({ 1, heads, positions + 1, frames }) } } });
    y = builder.add("slice_by_index",
        { { "x", { y } }, { "begin", { builder.integers({ 0, 0, 1, 0 }) } },
            { "end", { builder.integers({ 1, heads, positions + 1, frames }) } } });
    y = builder.add("reshape", { { "x", { y } }, { "shape", { builder.integers({ 1, heads, frames, positions }) } } });
    y = builder.add("slice_by_index",
        { { "x", { y } }, { "begin", { builder.integers({ 0, 0, 0, 0 }) } },
            { "end", { builder.integers({ 1, heads, frames, frames }) } } });
    const Function function = builder.finish({ builder.add("relu", { { "x", { y } } }) });
    EXPECT_EQ(planOf(function)->plan->stepCount(), 3U); // fill, copy, relu
    expectPlanAgreesWithInterpreter(function);
}

TEST(Plan, ComputesOnceWhatFollowsFromConstants)
{
    FunctionBuilder builder;
    const ValueIndex x = builder.input({ 200, 300 });
    const ValueIndex positions = builder.add(
        "linear", { { "x", { builder.weight({ 200, 100 }) } }, { "weight", { builder.weight({ 300, 100 }, 0.1f) } } });
    const ValueIndex bent = builder.add("tanh", { { "x", { positions } } });
    const Function function = builder.finish({ builder.add("add", { { "x", { x } }, { "y", { bent } } }) });
    EXPECT_EQ(planOf(function)->plan->stepCount(), 1U);
    expectPlanAgreesWithInterpreter(function);
}

// The result of the first convolution is larger than the caches, so it is never whole.
TEST(Plan, ConvolvesALargeShallowProductBandByBand)
{
    FunctionBuilder builder;
    const auto convolve = [&](ValueIndex x, const Shape& weight, int32_t groups) {
        return builder.add("conv",
            { { "x", { x } }, { "weight", { builder.weight(weight, 0.3f) } },
                { "bias", { builder.weight({ weight[0] }) } }, { "groups", { builder.integer(groups) } },
                { "strides", { builder.integers({ 2, 2 }) } }, { "pad_type", { builder.text("custom") } },
                { "pad", { builder.integers({ 1, 1, 1, 1 }) } } });
    };
    const ValueIndex x = builder.input({ 1, 1, 300, 130 });
    const ValueIndex y = builder.add("relu", { { "x", { convolve(x, { 128, 1, 3, 3 }, 1) } } });
    const ValueIndex z = convolve(y, { 128, 1, 3, 3 }, 128);
    const Function function = builder.finish({ builder.add("relu", { { "x", { z } } }) });
    const auto planned = planOf(function);
    EXPECT_EQ(planned->plan->stepCount(), 2U); // both convolutions; relu, written channels first
    const size_t firstResult = size_t { 128 } * 150 * 65 * sizeof(float);
    EXPECT_LT(planned->plan->arenaSize(), firstResult);
    expectPlanAgreesWithInterpreter(function);
}

TEST(Plan, GivesOutInputsConstantsAndOneValueTwice)
{
    FunctionBuilder builder;
    const ValueIndex x = builder.input({ 3, 4 });
    const ValueIndex turned = builder.add("transpose", { { "x", { x } }, { "perm", { builder.integers({ 1, 0 }) } } });
    const ValueIndex constant = builder.weight({ 5 });
    expectPlanAgreesWithInterpreter(builder.finish({ x, turned, constant, turned }));
}

TEST(Plan, LetsBuffersShareTheArena)
{
    FunctionBuilder builder;
    ValueIndex y = builder.input({ 64, 64 });
    for (int i = 0; i < 20; ++i)
        y = builder.add("softmax", { { "x", { y } } });
    const auto planned = planOf(builder.finish({ y }));
    constexpr size_t bufferSize = 64 * 64 * sizeof(float);
    EXPECT_LE(planned->plan->arenaSize(), 4 * bufferSize); // input, output, and two that take turns
}

TEST(Plan, AllocatesNothingWhenItRuns)
{
    const Function function = attention(true);
    const auto planned = planOf(function);
    const std::vector<Tensor> inputs = randomInputs(function);
    const std::vector<TensorView> views = viewsOf(inputs);
    planned->plan->run(views);
    const size_t before = allocationCount();
    planned->plan->run(views);
    EXPECT_EQ(allocationCount(), before);
}

} // namespace

} // namespace MLProgram
