// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations along one axis: softmax and layer normalisation.
#include "Kernels/Rows.h"
#include "Plan/Lowering.h"

#include <algorithm>

namespace MLProgram {

namespace {

size_t dimensionOf(int64_t axis, size_t rank)
{
    return static_cast<size_t>(axis < 0 ? axis + static_cast<int64_t>(rank) : axis);
}

// The order in which a view lies, but with one dimension innermost.
std::vector<size_t> orderWithInnermost(const View& view, size_t dimension)
{
    std::vector<size_t> order = memoryOrder(view);
    std::erase(order, dimension);
    order.push_back(dimension);
    return order;
}

// The values of a strided loop with its dimensions in this order.
StridedValues arranged(const Memory& memory, const View& view, std::span<const size_t> order)
{
    StridedValues values { memory.at(view), view.element, {} };
    for (const size_t dimension : order)
        values.strides.push_back(view.strides[dimension]);
    return values;
}

// The operand's expression, scale and bias and mask, is computed on the way into the softmax.
bool lowerSoftmax(Lowering& lowering, const GraphNode& node)
{
    const ValueIndex output = node.outputs.front();
    const size_t rank = lowering.graph().type(output).shape.size();
    if (rank == 0)
        return false;
    const size_t axis = dimensionOf(lowering.graph().operandsOf(node).integer("axis", -1), rank);
    const Expression scores = lowering.mappable(node.argument("x")->values.front());
    const auto program = rowProgramOf(scores);
    const View natural { 0, ElementType::real, 0, scores.shape, lowering.bestStrides(output, scores) };
    const std::vector<size_t> order = orderWithInnermost(natural, axis);
    const View to = lowering.newView(ElementType::real, scores.shape, orderedStrides(scores.shape, order));
    Step step { stepName("softmax", { to.count() / to.shape[axis], to.shape[axis] }), {}, { to.buffer }, {} };
    for (const View& input : scores.inputs)
        step.reads.push_back(input.buffer);
    step.bind = [=, &kernels = lowering.kernels()](const Memory& memory) -> std::function<void()> {
        Map map { {}, *program, {}, arranged(memory, to, order) };
        for (const size_t dimension : order)
            map.shape.push_back(to.shape[dimension]);
        for (const View& input : scores.inputs)
            map.inputs.push_back(arranged(memory, input, order));
        return [map, &kernels] { runSoftmax(map, kernels); };
    };
    lowering.emit(std::move(step));
    lowering.define(output, to);
    return true;
}

std::vector<size_t> normalisedAxes(const Operands& operands, size_t rank)
{
    std::vector<size_t> axes;
    for (const int32_t axis : operands.integers("axes"))
        axes.push_back(dimensionOf(axis, rank));
    return axes;
}

// gamma or beta, as floats that lie side by side.
std::optional<View> parameter(Lowering& lowering, const GraphNode& node, std::string_view name)
{
    const Argument* argument = node.argument(name);
    if (argument == nullptr)
        return std::nullopt;
    return lowering.denseView(argument->values.front());
}

bool lowerLayerNorm(Lowering& lowering, const GraphNode& node)
{
    const Operands operands = lowering.graph().operandsOf(node);
    if (!operands.has("axes"))
        return false;
    const ValueIndex x = node.argument("x")->values.front();
    const size_t rank = lowering.graph().type(x).shape.size();
    const std::vector<size_t> axes = normalisedAxes(operands, rank);
    if (axes.empty() || !std::ranges::is_sorted(axes))
        return false;

    std::vector<size_t> order = memoryOrder(lowering.view(x));
    std::erase_if(order, [&](size_t dimension) { return std::ranges::find(axes, dimension) != axes.end(); });
    const std::vector<size_t> rows = order;
    order.insert(order.end(), axes.begin(), axes.end());
    View from = lowering.view(x);
    if (axes.size() > 1 || (from.shape[axes[0]] != 1 && from.strides[axes[0]] != 1))
        from = lowering.orderedView(x, order);

    int64_t length = 1;
    for (const size_t axis : axes)
        length *= from.shape[axis];
    const View to = lowering.newView(ElementType::real, from.shape, orderedStrides(from.shape, order));
    const auto gamma = parameter(lowering, node, "gamma");
    const auto beta = parameter(lowering, node, "beta");
    Step step { stepName("layer norm", { from.count() / length, length }), { from.buffer }, { to.buffer }, {} };
    for (const auto& view : { gamma, beta }) {
        if (view)
            step.reads.push_back(view->buffer);
    }
    const float epsilon = operands.real("epsilon", 1e-5f);
    step.bind = [=, &kernels = lowering.kernels()](const Memory& memory) -> std::function<void()> {
        LayerNorm norm { {}, arranged(memory, from, rows), arranged(memory, to, rows),
            gamma ? memory.reals(*gamma) : nullptr, beta ? memory.reals(*beta) : nullptr, length, epsilon };
        for (const size_t dimension : rows)
            norm.shape.push_back(from.shape[dimension]);
        return [norm, &kernels] { run(norm, kernels); };
    };
    lowering.emit(std::move(step));
    lowering.define(node.outputs.front(), to);
    return true;
}

constexpr LoweringRule rules[] = {
    { "layer_norm", lowerLayerNorm },
    { "softmax", lowerSoftmax },
};

} // namespace

std::span<const LoweringRule> rowRules() noexcept
{
    return rules;
}

} // namespace MLProgram
