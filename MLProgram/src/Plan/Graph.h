// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Operations/Operation.h"
#include "Program/Constant.h"
#include "Program/Program.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace MLProgram {

// A value of a graph: its type is known to the last dimension.
struct GraphValue {
    TensorType type;
    std::optional<Constant> constant; // when it is known before the program runs

    // The constant in its running form, for those small enough to matter to shapes and parameters.
    std::optional<Tensor> known;
};

struct GraphNode {
    std::string operation;
    int opset = 17;
    std::vector<Argument> arguments;
    std::vector<ValueIndex> outputs;

    const Argument* argument(std::string_view name) const noexcept; // null when absent
};

// A function for given input shapes, on its way to a plan: like the program's function, but every shape is known,
// constants are folded, and passes may rewrite it.
struct Graph {
    std::vector<GraphValue> values;
    std::vector<ValueIndex> parameters;
    std::vector<GraphNode> nodes; // each uses only what stands before it
    std::vector<ValueIndex> outputs;

    ValueIndex add(TensorType type);
    ValueIndex add(Constant constant);

    const TensorType& type(ValueIndex value) const { return values[value].type; }
    bool isConstant(ValueIndex value) const { return values[value].constant.has_value(); }

    // What shape inference and the reference see of a node: types, and the values of small constants.
    Operands operandsOf(const GraphNode& node) const;
};

// How often each value is used, by nodes and as an output of the graph.
std::vector<uint32_t> useCounts(const Graph& graph);

// Removes nodes whose outputs nobody uses.
void removeUnused(Graph& graph);

} // namespace MLProgram
