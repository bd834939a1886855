// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/BatchedProduct.h"

#include "Kernels/KernelTesting.h"

namespace MLProgram {

namespace {

class BatchedProductTest : public EveryKernelSet { };
INSTANTIATE_TEST_SUITE_P(, BatchedProductTest, ::testing::ValuesIn(allKernelsOfThisProcessor()), kernelSetName);

float value(const BatchedProduct::Matrix& matrix, int64_t item, int64_t row, int64_t column)
{
    return matrix.values[item * matrix.batchStrides[0] + row * matrix.rowStride + column * matrix.columnStride];
}

void expectProduct(BatchedProduct product, const KernelSet& kernels)
{
    std::vector<float> result(static_cast<size_t>(product.batch[0] * product.rows * product.columns));
    product.result = result.data();
    product.resultBatchStrides = { product.rows * product.columns };
    product.resultStride = product.columns;
    std::vector<float> workspace(static_cast<size_t>(batchedProductWorkspace(product.rows, product.depth)));
    product.workspace = workspace.data();
    multiply(product, kernels);

    std::vector<float> expected;
    for (int64_t item = 0; item < product.batch[0]; ++item) {
        for (int64_t row = 0; row < product.rows; ++row) {
            for (int64_t column = 0; column < product.columns; ++column) {
                float sum = 0;
                for (int64_t k = 0; k < product.depth; ++k)
                    sum += value(product.left, item, row, k) * value(product.right, item, k, column);
                expected.push_back(sum);
            }
        }
    }
    expectNear(result, expected, 2e-5f);
}

TEST_P(BatchedProductTest, MultipliesQueriesByKeysOfHeadsThatLieSideBySide)
{
    constexpr int64_t heads = 3, frames = 50, width = 24, stride = heads * width;
    const std::vector<float> queries = randomValues(frames * stride, 1);
    const std::vector<float> keys = randomValues(frames * stride, 2);
    BatchedProduct product;
    product.batch = { heads };
    product.left = { queries.data(), { width }, stride, 1 };
    product.right = { keys.data(), { width }, 1, stride };
    product.rows = frames;
    product.depth = width;
    product.columns = frames;
    expectProduct(product, kernels());
}

TEST_P(BatchedProductTest, MultipliesWeightsByValues)
{
    constexpr int64_t heads = 2, frames = 33, width = 40, stride = heads * width;
    const std::vector<float> weights = randomValues(heads * frames * frames, 1);
    const std::vector<float> values = randomValues(frames * stride, 2);
    BatchedProduct product;
    product.batch = { heads };
    product.left = { weights.data(), { frames * frames }, frames, 1 };
    product.right = { values.data(), { width }, stride, 1 };
    product.rows = frames;
    product.depth = frames;
    product.columns = width;
    expectProduct(product, kernels());
}

TEST_P(BatchedProductTest, UsesOneMatrixForTheWholeBatchAndAnyStrides)
{
    const std::vector<float> left = randomValues(7 * 9 * 2, 1);
    const std::vector<float> right = randomValues(4 * 9 * 11 * 2, 2);
    BatchedProduct product;
    product.batch = { 4 };
    product.left = { left.data(), { 0 }, 2, 14 };
    product.right = { right.data(), { 9 * 11 * 2 }, 22, 2 };
    product.rows = 7;
    product.depth = 9;
    product.columns = 11;
    expectProduct(product, kernels());
}

} // namespace

} // namespace MLProgram
