// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Products: with constant weights, packed; of two computed matrices, in batches.
#include "Kernels/BatchedProduct.h"
#include "Plan/PackedProducts.h"

#include <algorithm>
#include <numeric>

namespace MLProgram {

namespace {

ValueIndex only(const GraphNode& node, std::string_view name)
{
    return node.argument(name)->values.front();
}

bool isWeight(const Lowering& lowering, ValueIndex value, size_t rank)
{
    return lowering.graph().isConstant(value) && lowering.graph().type(value).shape.size() == rank
        && lowering.graph().type(value).element == ElementType::real;
}

std::optional<ValueIndex> optionalValue(const GraphNode& node, std::string_view name)
{
    const Argument* argument = node.argument(name);
    return argument == nullptr ? std::nullopt : std::optional(argument->values.front());
}

bool lowerLinear(Lowering& lowering, const GraphNode& node)
{
    const ValueIndex weight = only(node, "weight");
    const ValueIndex x = only(node, "x");
    const size_t rank = lowering.graph().type(x).shape.size();
    if (!isWeight(lowering, weight, 2) || rank == 0)
        return false;
    const Shape& shape = lowering.graph().type(weight).shape;
    const WeightLayout layout { { shape[0], shape[1] }, { { shape[1], 1 } } };
    defineProduct(lowering, node.outputs.front(), matrixRows(lowering, x, rank - 1), { weight, layout }, rank - 1,
        optionalValue(node, "bias"));
    return true;
}

// x · y with a constant y, as a linear layer whose weight lies one way or the other.
bool lowerByWeight(Lowering& lowering, const GraphNode& node, bool isTransposed)
{
    const ValueIndex weight = only(node, "y");
    const ValueIndex x = only(node, "x");
    const size_t rank = lowering.graph().type(x).shape.size();
    if (!isWeight(lowering, weight, 2) || rank < 2)
        return false;
    const Shape& shape = lowering.graph().type(weight).shape;
    const WeightLayout layout = isTransposed ? WeightLayout { { shape[0], shape[1] }, { { shape[1], 1 } } }
                                             : WeightLayout { { shape[1], 1 }, { { shape[0], shape[1] } } };
    defineProduct(
        lowering, node.outputs.front(), matrixRows(lowering, x, rank - 1), { weight, layout }, rank - 1, std::nullopt);
    return true;
}

// One side of a batched product: a view with the dimensions batch.., rows, columns.
struct Side {
    View view;

    size_t rank() const { return view.shape.size(); }
    int64_t rows() const { return view.shape[rank() - 2]; }
    int64_t columns() const { return view.shape[rank() - 1]; }
    int64_t rowStride() const { return view.strides[rank() - 2]; }
    int64_t columnStride() const { return view.strides[rank() - 1]; }

    Side turned() const
    {
        Side side = *this;
        std::swap(side.view.shape[rank() - 2], side.view.shape[rank() - 1]);
        std::swap(side.view.strides[rank() - 2], side.view.strides[rank() - 1]);
        return side;
    }

    BatchedProduct::Matrix matrix(const Memory& memory) const
    {
        return { memory.reals(view), Shape(view.strides.begin(), view.strides.end() - 2), rowStride(), columnStride() };
    }
};

Side sideOf(const View& view, bool isTransposed, const Shape& result)
{
    Side side { view };
    if (isTransposed)
        side = side.turned();
    Shape target(result.begin(), result.end() - 2);
    target.insert(target.end(), side.view.shape.end() - 2, side.view.shape.end());
    const int64_t rowStride = side.rowStride();
    const int64_t columnStride = side.columnStride();
    side.view = broadcast(side.view, target);
    side.view.strides[target.size() - 2] = rowStride;
    side.view.strides[target.size() - 1] = columnStride;
    return side;
}

// Ways to write the result, each with one of the two matrix dimensions innermost, and with the other one inside or
// outside the batch.
std::vector<Shape> resultCandidates(const Shape& shape, bool prefersTurned)
{
    const size_t rank = shape.size();
    std::vector<Shape> candidates;
    const auto add = [&](size_t outer, size_t inner) {
        std::vector<size_t> order(rank - 2);
        std::iota(order.begin(), order.end(), size_t { 0 });
        order.insert(order.end(), { outer, inner });
        candidates.push_back(orderedStrides(shape, order));
        std::rotate(order.begin(), order.end() - 2, order.end() - 1);
        candidates.push_back(orderedStrides(shape, order));
    };
    add(prefersTurned ? rank - 1 : rank - 2, prefersTurned ? rank - 2 : rank - 1);
    add(prefersTurned ? rank - 2 : rank - 1, prefersTurned ? rank - 1 : rank - 2);
    return candidates;
}

void emitBatched(Lowering& lowering, ValueIndex output, Side left, Side right)
{
    const Shape& shape = lowering.graph().type(output).shape;
    const size_t rank = shape.size();
    // The left side is read along its columns, the right side along either; turned, they change places.
    const bool prefersTurned = left.columnStride() != 1 && right.rowStride() == 1;
    const std::vector<Shape> candidates = resultCandidates(shape, prefersTurned);
    const View result = lowering.newView(ElementType::real, shape, lowering.bestStrides(output, std::span(candidates)));
    Side to { result };
    if (result.strides[rank - 1] != 1 || (shape[rank - 1] == 1 && prefersTurned)) {
        std::swap(left, right);
        left = left.turned();
        right = right.turned();
        to = to.turned();
    }
    const BufferIndex workspace = lowering.newWorkspace(batchedProductWorkspace(left.rows(), left.columns()));
    Step step { stepName("batched product",
                    { result.count() / (left.rows() * right.columns()), left.rows(), left.columns(), right.columns() }),
        { left.view.buffer, right.view.buffer }, { result.buffer, workspace }, {} };
    step.bind = [=, &kernels = lowering.kernels()](const Memory& memory) -> std::function<void()> {
        const BatchedProduct product { Shape(to.view.shape.begin(), to.view.shape.end() - 2), left.matrix(memory),
            right.matrix(memory), memory.reals(to.view), Shape(to.view.strides.begin(), to.view.strides.end() - 2),
            to.rowStride(), left.rows(), left.columns(), right.columns(), memory.floats(workspace) };
        return [product, &kernels] { multiply(product, kernels); };
    };
    lowering.emit(std::move(step));
    lowering.define(output, result);
}

bool lowerMatmul(Lowering& lowering, const GraphNode& node)
{
    const Graph& graph = lowering.graph();
    const Operands operands = graph.operandsOf(node);
    const bool transposeX = operands.flag("transpose_x", false);
    const bool transposeY = operands.flag("transpose_y", false);
    if (graph.type(node.outputs.front()).element != ElementType::real)
        return false;
    if (!transposeX && lowerByWeight(lowering, node, transposeY))
        return true;
    const ValueIndex x = only(node, "x");
    const ValueIndex y = only(node, "y");
    if (graph.type(x).shape.size() < 2 || graph.type(y).shape.size() < 2)
        return false;
    const Shape& shape = graph.type(node.outputs.front()).shape;
    const Side left = sideOf(lowering.view(x), transposeX, shape);
    const Side right = sideOf(lowering.view(y), transposeY, shape);
    emitBatched(lowering, node.outputs.front(), left, right);
    return true;
}

constexpr LoweringRule rules[] = {
    { "linear", lowerLinear },
    { "matmul", lowerMatmul },
};

} // namespace

std::span<const LoweringRule> productRules() noexcept
{
    return rules;
}

} // namespace MLProgram
