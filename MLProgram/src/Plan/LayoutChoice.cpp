// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// In which order of dimensions a result is written, seen from the operations that will read it.
#include "Plan/Lowering.h"

#include <algorithm>

namespace MLProgram {

namespace {

// How far ahead it is worth looking.
constexpr int operationsAhead = 12;

constexpr std::string_view reshapes[] = { "reshape", "expand_dims", "squeeze", "flatten2d" };

bool isOneOf(std::string_view name, std::span<const std::string_view> names)
{
    return std::ranges::find(names, name) != names.end();
}

bool isElementwise(std::string_view name)
{
    return std::ranges::find(elementwiseRules(), name, &LoweringRule::operation) != elementwiseRules().end();
}

bool liesSideBySide(const View& view, int64_t axis)
{
    const auto dimension = static_cast<size_t>(axis < 0 ? axis + static_cast<int64_t>(view.shape.size()) : axis);
    return view.shape[dimension] == 1 || view.strides[dimension] == 1;
}

// The axis whose values the operation wants side by side; nothing when it does not matter.
std::optional<int64_t> wantedAxis(const Graph& graph, const GraphNode& node)
{
    if (node.operation == "conv")
        return 1;
    if (node.operation == "linear")
        return -1;
    if (node.operation == "softmax")
        return graph.operandsOf(node).integer("axis", -1);
    if (node.operation == "layer_norm" && node.argument("axes") != nullptr)
        return graph.operandsOf(node).integers("axes").back();
    return std::nullopt;
}

bool hasRule(std::string_view name)
{
    return name == "matmul" || name == "einsum" || name == "split" || name == "slice_by_index" || name == "concat";
}

Shape channelsLast(const Shape& shape)
{
    std::vector<size_t> order { 0 };
    for (size_t i = 2; i < shape.size(); ++i)
        order.push_back(i);
    order.push_back(1);
    return orderedStrides(shape, order);
}

// As the first operand that fills the whole shape lies; row-major when there is none.
Shape naturalStrides(const Expression& expression)
{
    for (const View& input : expression.inputs) {
        bool isWhole = true;
        for (size_t i = 0; i < input.shape.size(); ++i)
            isWhole = isWhole && (expression.shape[i] == 1 || input.strides[i] != 0);
        if (isWhole)
            return orderedStrides(expression.shape, memoryOrder(input));
    }
    return denseStrides(expression.shape);
}

} // namespace

int Lowering::copiesNeeded(ValueIndex value, View candidate) const
{
    for (int i = 0; i < operationsAhead; ++i) {
        if (consumers_[value].empty())
            return candidate.isDense() ? 0 : 1;
        if (useCounts_[value] != 1)
            return 0;
        const GraphNode& node = *consumers_[value].front();
        value = node.outputs.front();
        if (const auto axis = wantedAxis(graph_, node))
            return liesSideBySide(candidate, *axis) ? 0 : 1;
        if (node.operation == "transpose") {
            candidate = transposed(candidate, graph_.operandsOf(node).integers("perm"));
        } else if (isOneOf(node.operation, reshapes)) {
            const auto view = reshaped(candidate, graph_.type(value).shape);
            if (!view)
                return 1;
            candidate = *view;
        } else if (!isElementwise(node.operation) || graph_.type(value).shape != candidate.shape) {
            return hasRule(node.operation) || candidate.isDense() ? 0 : 1;
        }
    }
    return 0;
}

Shape Lowering::bestStrides(ValueIndex value, std::span<const Shape> candidates) const
{
    const Shape* best = nullptr;
    int fewest = 0;
    for (const Shape& candidate : candidates) {
        const int copies = copiesNeeded(value, { 0, ElementType::real, 0, graph_.type(value).shape, candidate });
        if (best == nullptr || copies < fewest) {
            best = &candidate;
            fewest = copies;
        }
    }
    return *best;
}

Shape Lowering::bestStrides(ValueIndex value, const Expression& expression) const
{
    std::vector<Shape> candidates { naturalStrides(expression), denseStrides(expression.shape) };
    if (expression.shape.size() > 2)
        candidates.push_back(channelsLast(expression.shape));
    return bestStrides(value, candidates);
}

} // namespace MLProgram
