// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/ProductCall.h"

#include <algorithm>

namespace MLProgram {

namespace {

// A product and all that it points to.
struct BoundProduct {
    std::shared_ptr<const PendingProduct> pending;
    std::shared_ptr<const LeftMatrix> left;
    RowProgram program;
    std::vector<EpilogueInput> operands;
    Product product;
};

} // namespace

std::optional<ProductCall> productCall(const Expression& expression)
{
    const PendingProduct& product = *expression.product;
    const std::vector<size_t> order = orderWithLast(expression.shape.size(), product.columnDimension);
    const std::span<const size_t> rowDimensions(order.data(), order.size() - 1);
    std::vector<int64_t> rowStrides { 0 };
    for (size_t i = 1; i < expression.inputs.size(); ++i) {
        const View& input = expression.inputs[i];
        const auto isStretched = [&](size_t d) { return input.shape[d] == 1 || input.strides[d] == 0; };
        const auto stride = std::ranges::all_of(rowDimensions, isStretched) ? 0 : commonStride(input, rowDimensions);
        if (!stride)
            return std::nullopt;
        rowStrides.push_back(*stride);
    }
    const PackedMatrix& right = *product.right;
    ProductCall call { product.reads, stepName("product", { product.rows, right.depth(), right.columns() }),
        right.depth(), {} };
    for (size_t i = 1; i < expression.inputs.size(); ++i)
        call.reads.push_back(expression.inputs[i].buffer);
    call.bind = [rowStrides, pending = expression.product, inputs = expression.inputs,
                    isPlain = expression.terms.empty(), program = *rowProgramOf(expression)](const Memory& memory) {
        auto bound = std::make_shared<BoundProduct>(BoundProduct { pending, pending->left(memory), program, {}, {} });
        for (size_t i = 1; i < inputs.size(); ++i)
            bound->operands.push_back({ memory.at(inputs[i]), inputs[i].element, rowStrides[i],
                inputs[i].strides[pending->columnDimension] });
        bound->product = { bound->left.get(), pending->right.get(), nullptr, pending->right->columns(),
            pending->bias ? memory.reals(*pending->bias) : nullptr,
            { isPlain ? nullptr : &bound->program, bound->operands }, nullptr };
        return std::shared_ptr<const Product>(bound, &bound->product);
    };
    return call;
}

} // namespace MLProgram
