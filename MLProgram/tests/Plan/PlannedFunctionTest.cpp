// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/PlannedFunction.h"

#include "AllocationCount.h"
#include "Interpreter/Interpreter.h"
#include "Text/TextTesting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace MLProgram {

namespace {

// Stands in for the interpreter, and says that it ran.
class CountingFallback final : public Executable {
public:
    CountingFallback(std::shared_ptr<const Function> function, int& runs)
        : interpreter_(std::move(function))
        , runs_(runs)
    {
    }

    std::span<const TensorView> run(std::span<const TensorView> inputs) override
    {
        ++runs_;
        return interpreter_.run(inputs);
    }

private:
    Interpreter interpreter_;
    int& runs_;
};

// A function under test, with a count of how often the fallback was made and run.
struct Planned {
    explicit Planned(Function written)
        : function(std::make_shared<const Function>(std::move(written)))
        , planned(function, [this] {
            ++fallbacksMade;
            return std::make_unique<CountingFallback>(function, fallbackRuns);
        })
    {
    }

    std::shared_ptr<const Function> function;
    int fallbacksMade = 0;
    int fallbackRuns = 0;
    PlannedFunction planned;
};

Function functionOf(const std::string& parameters, const std::string& body, const std::string& output)
{
    return read(mainFunction(parameters, body, output)).functions.front();
}

Tensor counting(const Shape& shape)
{
    Tensor tensor({ ElementType::real, shape });
    float next = -2;
    for (float& value : tensor.view().reals())
        value = next++;
    return tensor;
}

// Runs the function on a shape; true when something was allocated, as for a new plan.
bool allocatesFor(Planned& planned, const Shape& shape)
{
    const Tensor input = counting(shape);
    const TensorView view = input.view();
    const size_t before = allocationCount();
    const auto outputs = planned.planned.run({ &view, 1 });
    const bool hasAllocated = allocationCount() != before;
    EXPECT_EQ(outputs[0].type.shape, shape);
    EXPECT_EQ(outputs[0].reals()[0], 0.0f);
    EXPECT_EQ(outputs[0].reals().back(), std::max(0.0f, view.reals().back()));
    return hasAllocated;
}

TEST(PlannedFunction, PlansFixedShapesBeforeTheFirstRun)
{
    Planned planned(functionOf("tensor<fp32, [2, 3]> x", "tensor<fp32, [2, 3]> y = relu(x = x);", "y"));
    EXPECT_FALSE(allocatesFor(planned, { 2, 3 }));
    EXPECT_EQ(planned.fallbacksMade, 0);
}

TEST(PlannedFunction, KeepsThePlansOfTheLastFourShapes)
{
    Planned planned(functionOf("tensor<fp32, [1, ?]> x", "tensor<fp32, [1, ?]> y = relu(x = x);", "y"));
    for (const int64_t size : { 1, 2, 3, 4 })
        EXPECT_TRUE(allocatesFor(planned, { 1, size }));
    EXPECT_FALSE(allocatesFor(planned, { 1, 1 })); // now the latest used
    EXPECT_TRUE(allocatesFor(planned, { 1, 5 })); // in place of 2
    EXPECT_FALSE(allocatesFor(planned, { 1, 1 }));
    EXPECT_FALSE(allocatesFor(planned, { 1, 3 }));
    EXPECT_TRUE(allocatesFor(planned, { 1, 2 }));
    EXPECT_EQ(planned.fallbacksMade, 0);
}

// The bounds of the slice come in as data; the shape of what is written is known.
Function updateAtComputedBounds()
{
    return functionOf("tensor<fp32, [3, 4]> x, tensor<fp32, [2, 2]> update, tensor<int32, [2]> begin",
        "tensor<int32, [2]> size = const()[val = tensor<int32, [2]>([2, 2])];"
        "tensor<int32, [2]> end = add(x = begin, y = size);"
        "tensor<fp32, [3, 4]> y = slice_update(x = x, update = update, begin = begin, end = end);"
        "tensor<fp32, [3, 4]> z = relu(x = y);",
        "z");
}

TEST(PlannedFunction, UpdatesASliceAtComputedBounds)
{
    Planned planned(updateAtComputedBounds());
    Tensor x({ ElementType::real, { 3, 4 } });
    Tensor update({ ElementType::real, { 2, 2 } });
    std::ranges::fill(x.view().reals(), 1.0f);
    std::ranges::fill(update.view().reals(), 5.0f);
    for (const int32_t row : { 0, 1 }) {
        Tensor begin({ ElementType::integer, { 2 } });
        begin.view().integers()[0] = row;
        begin.view().integers()[1] = 2;
        const TensorView inputs[] = { x.view(), update.view(), begin.view() };
        const auto y = planned.planned.run(inputs)[0].reals();
        for (size_t i = 0; i < y.size(); ++i) {
            const auto at = static_cast<int32_t>(i / 4);
            const bool isUpdated = at >= row && at < row + 2 && i % 4 >= 2;
            EXPECT_EQ(y[i], isUpdated ? 5.0f : 1.0f) << "row " << row << ", at " << i;
        }
    }
}

// The length of the result depends on the values of x.
TEST(PlannedFunction, InterpretsWhatHasNoShapeBeforeItRuns)
{
    Planned planned(functionOf("tensor<fp32, [4]> x", "tensor<int32, [?, 1]> y = non_zero(x = x);", "y"));
    const Tensor input = counting({ 4 }); // -2, -1, 0, 1
    const TensorView view = input.view();
    for (int run = 0; run < 2; ++run)
        EXPECT_EQ(planned.planned.run({ &view, 1 })[0].type.shape, (Shape { 3, 1 }));
    EXPECT_EQ(planned.fallbacksMade, 1);
    EXPECT_EQ(planned.fallbackRuns, 2);
}

} // namespace

} // namespace MLProgram
