// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that pick parts of a tensor by index.
#include "Operations/Definitions.h"
#include "Operations/Indexing.h"
#include "Operations/Numbers.h"
#include "Operations/Shapes.h"

#include <algorithm>

namespace MLProgram {

namespace {

// How many leading dimensions of "x" and "indices" belong together one by one.
size_t batchDimensions(const Operands& operands, const Shape& x, const Shape& indices)
{
    const int64_t count = operands.integer("batch_dims", 0);
    const auto most = static_cast<int64_t>(std::min(x.size(), indices.size()));
    operands.require(count >= 0 && count <= most, "\"batch_dims\" is not a number of dimensions of its operands");
    const auto batch = static_cast<size_t>(count);
    operands.require(slice(x, 0, batch) == slice(indices, 0, batch), "the batch dimensions of its operands differ");
    return batch;
}

// The shape of "x" with the dimension `axis` replaced by the dimensions of "indices" that follow the batch.
TensorTypes inferGather(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const TensorView& indices = integerTensor(operands, "indices");
    const size_t axis = axisOperand(operands, "axis", 0, x.shape.size());
    const size_t batch = batchDimensions(operands, x.shape, indices.type.shape);
    operands.require(batch <= axis, "the axis is one of the batch dimensions");
    requirePositions(operands, indices, { &x.shape[axis], 1 });

    const Shape picked = slice(indices.type.shape, batch, indices.type.shape.size());
    const Shape front = joined(operands, slice(x.shape, 0, axis), picked);
    return { outputType(operands, x.element, joined(operands, front, slice(x.shape, axis + 1, x.shape.size()))) };
}

// "x" is [batch, outer, size, inner], "indices" [batch, count], the output [batch, outer, count, inner].
void evaluateGather(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const Shape& shape = x.type.shape;
    const TensorView& indices = operands.tensor("indices");
    const size_t axis = axisOperand(operands, "axis", 0, shape.size());
    const auto batch = static_cast<size_t>(operands.integer("batch_dims", 0));

    const int64_t batches = countBetween(shape, 0, batch);
    const int64_t outer = countBetween(shape, batch, axis);
    const int64_t inner = countBetween(shape, axis + 1, shape.size());
    const auto count = static_cast<size_t>(countBetween(indices.type.shape, batch, indices.type.shape.size()));
    withElementType(x.type.element, [&](auto zero) {
        const auto* from = x.values<const decltype(zero)>().data();
        auto* to = outputs[0].values<decltype(zero)>().data();
        for (int64_t b = 0; b < batches; ++b)
            for (int64_t o = 0; o < outer; ++o, from += shape[axis] * inner)
                for (const int32_t index : indices.integers().subspan(static_cast<size_t>(b) * count, count))
                    to = std::copy_n(from + positionOf(index, shape[axis]) * inner, inner, to);
    });
}

TensorTypes inferGatherAlongAxis(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const TensorView& indices = integerTensor(operands, "indices");
    const size_t axis = axisOperand(operands, "axis", 0, x.shape.size());
    requireAlignedIndices(operands, x.shape, indices, axis);
    return { outputType(operands, x.element, indices.type.shape) };
}

// output[o, k, i] = x[o, indices[o, k, i], i], where o and i stand for the dimensions around the axis.
void evaluateGatherAlongAxis(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const Shape& shape = x.type.shape;
    const size_t axis = axisOperand(operands, "axis", 0, shape.size());
    withElementType(x.type.element, [&](auto zero) {
        const auto from = x.values<const decltype(zero)>();
        auto to = outputs[0].values<decltype(zero)>().begin();
        forEachAlignedIndex(operands.tensor("indices"), shape, axis, [&](int64_t at) { *to++ = from[at]; });
    });
}

// The last dimension of "indices" holds tuples, each of which addresses the leading dimensions of "x" that follow
// the batch.
TensorTypes inferGatherTuples(const Operands& operands)
{
    const TensorType& x = operands.tensor("x").type;
    const TensorView& indices = integerTensor(operands, "indices");
    requireRank(operands, indices, 1);
    const size_t tuples = indices.type.shape.size() - 1;
    const size_t batch = batchDimensions(operands, x.shape, slice(indices.type.shape, 0, tuples));
    const Shape rest = addressedSlice(operands, x.shape, indices, batch);
    return { outputType(operands, x.element, joined(operands, slice(indices.type.shape, 0, tuples), rest)) };
}

void evaluateGatherTuples(const Operands& operands, std::span<const TensorView> outputs)
{
    const TensorView& x = operands.tensor("x");
    const Shape& shape = x.type.shape;
    const TensorView& indices = operands.tensor("indices");
    const Shape& indexShape = indices.type.shape;
    const auto batch = static_cast<size_t>(operands.integer("batch_dims", 0));
    const auto width = static_cast<size_t>(indexShape.back());

    const Shape addressed = slice(shape, batch, batch + width);
    const int64_t inner = countBetween(shape, batch + width, shape.size());
    const int64_t batches = countBetween(shape, 0, batch);
    const int64_t tuples = countBetween(indexShape, batch, indexShape.size() - 1);
    withElementType(x.type.element, [&](auto zero) {
        const auto* from = x.values<const decltype(zero)>().data();
        auto* to = outputs[0].values<decltype(zero)>().data();
        auto left = indices.integers();
        for (int64_t b = 0; b < batches; ++b, from += elementCount(addressed) * inner)
            for (int64_t t = 0; t < tuples; ++t, left = left.subspan(width))
                to = std::copy_n(from + sliceNumber(left.first(width), addressed) * inner, inner, to);
    });
}

constexpr OperationDefinition definitions[] = {
    { "gather", inferGather, evaluateGather },
    { "gather_along_axis", inferGatherAlongAxis, evaluateGatherAlongAxis },
    { "gather_nd", inferGatherTuples, evaluateGatherTuples },
};

} // namespace

Definitions gatherings() noexcept
{
    return definitions;
}

} // namespace MLProgram
