// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/PlanTesting.h"

#include "Interpreter/Interpreter.h"

#include <algorithm>
#include <stdexcept>

namespace MLProgram {

namespace {

void fill(const TensorView& view, unsigned seed)
{
    const std::vector<float> values = randomValues(view.count(), seed, 2.0f);
    if (view.type.element == ElementType::real)
        std::ranges::copy(values, view.reals().begin());
    else if (view.type.element == ElementType::integer)
        std::ranges::transform(values, view.integers().begin(), [](float x) { return static_cast<int32_t>(x * 3); });
    else
        std::ranges::transform(values, view.booleans().begin(), [](float x) { return static_cast<uint8_t>(x > 0); });
}

void expectEqual(const TensorView& actual, const TensorView& expected, float tolerance)
{
    ASSERT_EQ(actual.type, expected.type);
    if (actual.type.element == ElementType::integer) {
        EXPECT_TRUE(std::ranges::equal(actual.integers(), expected.integers()));
    } else if (actual.type.element == ElementType::boolean) {
        EXPECT_TRUE(std::ranges::equal(actual.booleans(), expected.booleans()));
    } else {
        const auto a = actual.reals();
        const auto b = expected.reals();
        expectNear({ a.begin(), a.end() }, { b.begin(), b.end() }, tolerance);
    }
}

} // namespace

std::vector<Tensor> randomInputs(const Function& function, unsigned seed)
{
    std::vector<Tensor> inputs;
    for (const ValueIndex parameter : function.parameters) {
        const ValueType& type = function.values[parameter].type;
        inputs.emplace_back(TensorType { elementTypeOf(type.scalar), type.shape });
        fill(inputs.back().view(), seed++);
    }
    return inputs;
}

std::vector<TensorView> viewsOf(const std::vector<Tensor>& tensors)
{
    std::vector<TensorView> views;
    for (const Tensor& tensor : tensors)
        views.push_back(tensor.view());
    return views;
}

std::unique_ptr<TestPlan> planOf(const Function& function, const KernelSet& kernels)
{
    std::vector<Shape> shapes;
    for (const ValueIndex parameter : function.parameters)
        shapes.push_back(function.values[parameter].type.shape);
    auto graph = buildGraph(function, shapes);
    if (!graph)
        throw std::logic_error("the function cannot be planned");
    removeUnused(*graph);
    auto result = std::make_unique<TestPlan>(TestPlan { WeightStore(kernels.panelWidth), nullptr });
    result->plan = std::make_unique<Plan>(*graph, kernels, result->weights);
    return result;
}

namespace {

void expectAgreement(Executable& plan, Executable& interpreter, const std::vector<Tensor>& inputs, float tolerance)
{
    const auto actual = plan.run(viewsOf(inputs));
    const auto expected = interpreter.run(viewsOf(inputs));
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i)
        expectEqual(actual[i], expected[i], tolerance);
}

} // namespace

void expectPlanAgreesWithInterpreter(const Function& function, const std::vector<Tensor>& inputs, float tolerance)
{
    Interpreter interpreter(std::make_shared<const Function>(function));
    expectAgreement(*planOf(function)->plan, interpreter, inputs, tolerance);
}

void expectPlanAgreesWithInterpreter(const Function& function, const KernelSet& kernels, float tolerance)
{
    const auto planned = planOf(function, kernels);
    Interpreter interpreter(std::make_shared<const Function>(function));
    for (const unsigned seed : { 1u, 100u })
        expectAgreement(*planned->plan, interpreter, randomInputs(function, seed), tolerance);
}

} // namespace MLProgram
