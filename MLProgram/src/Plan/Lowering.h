// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/KernelSet.h"
#include "Plan/Expression.h"
#include "Plan/Graph.h"
#include "Plan/ProductCall.h"
#include "Plan/Schedule.h"
#include "Plan/WeightStore.h"

#include <map>
#include <optional>
#include <vector>

namespace MLProgram {

// Turns a graph into a schedule, node by node.
//
// A value is first of all an idea: a view of memory, or an expression that nothing has computed yet. Operations that
// only move data give another view. Element-wise operations extend the expression of their operand, so that whole
// chains, and what follows a product, become one step. An expression becomes a step when something needs its result
// in memory.
class Lowering {
public:
    Lowering(const Graph& graph, const KernelSet& kernels, WeightStore& weights);

    // Makes the schedule; `inputs` and `outputs` are then the views of the graph's parameters and outputs, dense.
    void run();
    Schedule& schedule() noexcept { return schedule_; }
    const std::vector<View>& inputs() const noexcept { return inputs_; }
    const std::vector<View>& outputs() const noexcept { return outputs_; }

    // What the rules for the operations use.
    const Graph& graph() const noexcept { return graph_; }
    const KernelSet& kernels() const noexcept { return kernels_; }
    WeightStore& weights() noexcept { return weights_; }

    // The value in memory; computes it now if it is still an expression.
    View view(ValueIndex value);

    // The same, row-major without gaps.
    View denseView(ValueIndex value);

    // The same with the dimensions in this order in memory, the last innermost. The value lies so from then on.
    View orderedView(ValueIndex value, std::span<const size_t> order);

    // The value as an expression of its own shape; null when it lies in memory, or others need it there.
    const Expression* expression(ValueIndex value) const;

    // A number as a value of rank 0.
    View number(float value);

    void define(ValueIndex value, const View& view);
    void define(ValueIndex value, Expression expression);

    View newView(ElementType element, const Shape& shape, const Shape& strides);
    BufferIndex newWorkspace(int64_t floats);
    void emit(Step step) { schedule_.steps.push_back(std::move(step)); }

    // Computes an expression without a product into `to`.
    void emitMap(const Expression& expression, const View& to);
    void emitReorder(const View& from, const View& to);

    // The strides in which an element-wise result, or the result of a matrix product, is best written: the first of
    // the candidates with which the operations that follow need the fewest copies.
    Shape bestStrides(ValueIndex value, std::span<const Shape> candidates) const;

    // Those for an element-wise expression.
    Shape bestStrides(ValueIndex value, const Expression& expression) const;

    // The expression of a value, without a product, ready to be mapped.
    Expression mappable(ValueIndex value);

private:
    void lower(const GraphNode& node);
    View compute(ValueIndex value, const Expression& expression);
    std::optional<View> computeProduct(const Expression& expression);
    View constantView(ValueIndex value);
    View outputView(ValueIndex value);
    int copiesNeeded(ValueIndex value, View candidate) const;

    const Graph& graph_;
    const KernelSet& kernels_;
    WeightStore& weights_;
    Schedule schedule_;
    std::vector<std::optional<View>> views_;
    std::vector<std::optional<Expression>> expressions_;
    std::vector<std::vector<const GraphNode*>> consumers_;
    std::vector<uint32_t> useCounts_;
    std::map<float, View> numbers_;
    std::vector<View> inputs_;
    std::vector<View> outputs_;
};

// Lowers one kind of operation. False when this particular node is beyond it: then the reference computes it.
struct LoweringRule {
    std::string_view operation;
    bool (*lower)(Lowering& lowering, const GraphNode& node);
};

// The rules of each subject, one function for each source file.
std::span<const LoweringRule> convolutionRules() noexcept;
std::span<const LoweringRule> elementwiseRules() noexcept;
std::span<const LoweringRule> movementRules() noexcept;
std::span<const LoweringRule> productRules() noexcept;
std::span<const LoweringRule> rowRules() noexcept;

// Computes any node by the reference definition of its operation, on dense tensors.
void lowerToReference(Lowering& lowering, const GraphNode& node);

} // namespace MLProgram
