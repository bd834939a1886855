// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/Graph.h"

#include <algorithm>

namespace MLProgram {

namespace {

// Constants up to this size are kept in their running form: parameters, shapes, biases.
constexpr int64_t smallConstant = 1 << 14;

} // namespace

const Argument* GraphNode::argument(std::string_view name) const noexcept
{
    const auto found = std::ranges::find(arguments, name, &Argument::name);
    return found == arguments.end() ? nullptr : &*found;
}

ValueIndex Graph::add(TensorType type)
{
    values.push_back({ std::move(type), std::nullopt, std::nullopt });
    return static_cast<ValueIndex>(values.size() - 1);
}

ValueIndex Graph::add(Constant constant)
{
    GraphValue value { constant.isText() ? TensorType {} : constant.tensorType(), std::nullopt, std::nullopt };
    if (!constant.isText() && constant.count() <= smallConstant)
        value.known = constant.widened();
    value.constant = std::move(constant);
    values.push_back(std::move(value));
    return static_cast<ValueIndex>(values.size() - 1);
}

Operands Graph::operandsOf(const GraphNode& node) const
{
    Operands operands(node.operation, node.opset);
    for (const Argument& argument : node.arguments) {
        if (argument.values.size() == 1) {
            const GraphValue& value = values[argument.values.front()];
            if (value.constant && value.constant->isText()) {
                operands.add(argument.name, value.constant->text());
                continue;
            }
        }
        Operands::List list;
        for (const ValueIndex index : argument.values)
            list.push_back(
                values[index].known ? values[index].known->view() : TensorView { values[index].type, nullptr });
        operands.add(argument.name, std::move(list));
    }
    return operands;
}

std::vector<uint32_t> useCounts(const Graph& graph)
{
    std::vector<uint32_t> counts(graph.values.size(), 0);
    for (const GraphNode& node : graph.nodes) {
        for (const Argument& argument : node.arguments) {
            for (const ValueIndex value : argument.values)
                ++counts[value];
        }
    }
    for (const ValueIndex value : graph.outputs)
        ++counts[value];
    return counts;
}

void removeUnused(Graph& graph)
{
    std::vector<bool> isUsed(graph.values.size(), false);
    for (const ValueIndex value : graph.outputs)
        isUsed[value] = true;
    std::vector<GraphNode> kept;
    for (auto node = graph.nodes.rbegin(); node != graph.nodes.rend(); ++node) {
        if (std::ranges::none_of(node->outputs, [&](ValueIndex value) { return isUsed[value]; }))
            continue;
        for (const Argument& argument : node->arguments) {
            for (const ValueIndex value : argument.values)
                isUsed[value] = true;
        }
        kept.push_back(std::move(*node));
    }
    graph.nodes.assign(std::make_move_iterator(kept.rbegin()), std::make_move_iterator(kept.rend()));
}

} // namespace MLProgram
