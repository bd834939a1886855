// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/BatchedProduct.h"

#include "Kernels/LeftMatrix.h"
#include "Kernels/Transpose.h"
#include "Kernels/Workers.h"

#include <algorithm>

namespace MLProgram {

namespace {

constexpr int64_t multiplicationsWorthThreads = 1 << 17;

struct Offsets {
    int64_t left = 0;
    int64_t right = 0;
    int64_t result = 0;
};

Offsets offsetsOf(const BatchedProduct& product, int64_t item)
{
    Offsets offsets;
    for (size_t i = product.batch.size(); i-- > 0;) {
        const int64_t index = item % product.batch[i];
        item /= product.batch[i];
        offsets.left += index * product.left.batchStrides[i];
        offsets.right += index * product.right.batchStrides[i];
        offsets.result += index * product.resultBatchStrides[i];
    }
    return offsets;
}

void copyRow(const float* from, int64_t stride, int64_t count, float* to)
{
    if (stride == 1) {
        std::copy_n(from, count, to);
        return;
    }
    for (int64_t i = 0; i < count; ++i)
        to[i] = from[i * stride];
}

// One product of the batch, by one thread with its own working memory.
class Item {
public:
    Item(const BatchedProduct& product, const KernelSet& kernels, const Offsets& offsets, float* workspace)
        : product_(product)
        , kernels_(kernels)
        , right_(product.right.values + offsets.right)
        , result_(product.result + offsets.result)
        , packedLeft_(workspace)
        , panel_(workspace + product.rows * product.depth)
        , tileCount_((product.rows + kernels.tileRows - 1) / kernels.tileRows)
    {
        const StridedMatrix left(product.left.values + offsets.left, product.rows, product.left.rowStride,
            product.depth, product.left.columnStride);
        for (int64_t tile = 0; tile < tileCount_; ++tile)
            left.packTile(
                firstRow(tile), firstRow(tile + 1) - firstRow(tile), packedLeft_ + firstRow(tile) * product.depth);
    }

    void multiply() const
    {
        for (int64_t column = 0; column < product_.columns; column += kernels_.panelWidth) {
            const int64_t width = std::min(kernels_.panelWidth, product_.columns - column);
            packPanel(column, width);
            for (int64_t tile = 0; tile < tileCount_; ++tile)
                multiplyTile(tile, column, width);
        }
    }

private:
    int64_t firstRow(int64_t tile) const { return product_.rows * tile / tileCount_; }

    void packPanel(int64_t column, int64_t width) const
    {
        const auto& right = product_.right;
        const float* from = right_ + column * right.columnStride;
        if (width < kernels_.panelWidth)
            std::fill_n(panel_, product_.depth * kernels_.panelWidth, 0.0f);
        if (right.rowStride == 1)
            return transpose(from, right.columnStride, width, product_.depth, panel_, kernels_.panelWidth);
        for (int64_t k = 0; k < product_.depth; ++k)
            copyRow(from + k * right.rowStride, right.columnStride, width, panel_ + k * kernels_.panelWidth);
    }

    void multiplyTile(int64_t tile, int64_t column, int64_t width) const
    {
        alignas(64) float whole[maximumTileRows * maximumPanelWidth];
        const bool isWhole = width == kernels_.panelWidth;
        const int64_t first = firstRow(tile);
        const int64_t rows = firstRow(tile + 1) - first;
        float* result = result_ + first * product_.resultStride + column;
        kernels_.tile({ packedLeft_ + first * product_.depth, panel_, isWhole ? result : whole, nullptr, product_.depth,
            rows, isWhole ? product_.resultStride : kernels_.panelWidth, false });
        for (int64_t row = 0; !isWhole && row < rows; ++row)
            std::copy_n(whole + row * kernels_.panelWidth, width, result + row * product_.resultStride);
    }

    const BatchedProduct& product_;
    const KernelSet& kernels_;
    const float* right_;
    float* result_;
    float* packedLeft_;
    float* panel_;
    int64_t tileCount_;
};

int64_t workspaceOfThread(int64_t rows, int64_t depth) noexcept
{
    return (rows + maximumPanelWidth) * depth;
}

} // namespace

int64_t batchedProductWorkspace(int64_t rows, int64_t depth) noexcept
{
    return workspaceOfThread(rows, depth) * Workers::shared().count();
}

void multiply(const BatchedProduct& product, const KernelSet& kernels)
{
    const int64_t items = elementCount(product.batch);
    if (product.rows == 0 || product.columns == 0)
        return;
    const int64_t multiplications = items * product.rows * product.depth * product.columns;
    forEachTask(items, multiplications > multiplicationsWorthThreads, [&](int64_t item, int worker) {
        float* workspace = product.workspace + worker * workspaceOfThread(product.rows, product.depth);
        Item(product, kernels, offsetsOf(product, item), workspace).multiply();
    });
}

} // namespace MLProgram
