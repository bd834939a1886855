// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/PackedProducts.h"

namespace MLProgram {

LeftSide matrixRows(Lowering& lowering, ValueIndex value, size_t columnDimension)
{
    View view = lowering.view(value);
    const std::vector<size_t> order = orderWithLast(view.shape.size(), columnDimension);
    const std::span<const size_t> rows { order.data(), order.size() - 1 };
    const bool liesInRows = view.shape[columnDimension] == 1 || view.strides[columnDimension] == 1;
    if (!liesInRows || !commonStride(view, rows))
        view = lowering.orderedView(value, order);
    const int64_t stride = *commonStride(view, rows);
    const int64_t depth = view.shape[columnDimension];
    const int64_t count = view.count() / depth;
    return { view, count, [=](const Memory& memory) {
                return std::make_shared<const StridedMatrix>(memory.reals(view), count, stride, depth, 1);
            } };
}

void defineProduct(Lowering& lowering, ValueIndex output, LeftSide left, const WeightOperand& weight,
    size_t columnDimension, std::optional<ValueIndex> bias)
{
    const Shape& shape = lowering.graph().type(output).shape;
    auto product = std::make_shared<PendingProduct>();
    product->reads = { left.view.buffer };
    if (bias) {
        product->bias = lowering.denseView(*bias);
        product->reads.push_back(product->bias->buffer);
    }
    product->left = std::move(left.bind);
    product->right = lowering.weights().packed(*lowering.graph().values[weight.value].constant, weight.layout);
    product->rows = left.rows;
    product->columnDimension = columnDimension;

    View result { 0, ElementType::real, 0, shape, denseStrides(shape) };
    lowering.define(output, Expression { shape, { result }, {}, std::move(product) });
}

} // namespace MLProgram
