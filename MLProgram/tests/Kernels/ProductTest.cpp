// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/Product.h"

#include "Kernels/KernelTesting.h"

#include <tuple>

namespace MLProgram {

namespace {

struct Size {
    int64_t rows;
    int64_t depth;
    int64_t columns;
};

// A single row, tile edges, several tiles, several blocks of rows, depths beyond one widened block.
const Size sizes[] = { { 1, 1, 1 }, { 1, 640, 70 }, { 5, 33, 31 }, { 14, 257, 64 }, { 15, 100, 33 }, { 32, 300, 96 },
    { 47, 513, 40 }, { 200, 64, 65 }, { 397, 20, 17 } };

class ProductTest : public EveryKernelSet { };
INSTANTIATE_TEST_SUITE_P(, ProductTest, ::testing::ValuesIn(allKernelsOfThisProcessor()), kernelSetName);

// weights are [columns][depth].
std::vector<float> plainProduct(const std::vector<float>& left, const std::vector<float>& weights, const Size& size)
{
    std::vector<float> result;
    for (int64_t row = 0; row < size.rows; ++row) {
        for (int64_t column = 0; column < size.columns; ++column) {
            double sum = 0;
            for (int64_t k = 0; k < size.depth; ++k)
                sum += static_cast<double>(left[static_cast<size_t>(row * size.depth + k)])
                    * static_cast<double>(weights[static_cast<size_t>(column * size.depth + k)]);
            result.push_back(static_cast<float>(sum));
        }
    }
    return result;
}

WeightLayout columnMajor(const Size& size)
{
    return { { size.columns, size.depth }, { { size.depth, 1 } } };
}

std::vector<float> run(const std::vector<float>& left, const PackedMatrix& right, const Size& size,
    const KernelSet& kernels, const Epilogue& epilogue = {})
{
    const StridedMatrix matrix(left.data(), size.rows, size.depth, size.depth, 1);
    std::vector<float> result(static_cast<size_t>(size.rows * size.columns), -99.0f);
    std::vector<float> workspace(static_cast<size_t>(productWorkspace(size.rows, size.depth)));
    multiply({ &matrix, &right, result.data(), size.columns, nullptr, epilogue, workspace.data() }, kernels);
    return result;
}

TEST_P(ProductTest, MultipliesBy16BitWeights)
{
    for (const Size& size : sizes) {
        const std::vector<float> left = randomValues(size.rows * size.depth, 1);
        const std::vector<float> weights = randomValues(size.columns * size.depth, 2);
        const PackedMatrix right(halves(weights).data(), columnMajor(size), kernels().panelWidth);
        expectNear(run(left, right, size, kernels()), plainProduct(left, weights, size), 2e-5f);
    }
}

TEST_P(ProductTest, MultipliesBy32BitWeights)
{
    for (const Size& size : sizes) {
        const std::vector<float> left = randomValues(size.rows * size.depth, 1);
        const std::vector<float> weights = randomValues(size.columns * size.depth, 2);
        const PackedMatrix right(weights.data(), columnMajor(size), kernels().panelWidth);
        expectNear(run(left, right, size, kernels()), plainProduct(left, weights, size), 2e-5f);
    }
}

TEST_P(ProductTest, PacksWeightsThatLieRowByRow)
{
    const Size size { 6, 20, 45 };
    const std::vector<float> left = randomValues(size.rows * size.depth, 1);
    const std::vector<float> weights = randomValues(size.columns * size.depth, 2);
    std::vector<float> turned(weights.size());
    for (int64_t k = 0; k < size.depth; ++k) {
        for (int64_t n = 0; n < size.columns; ++n)
            turned[static_cast<size_t>(k * size.columns + n)] = weights[static_cast<size_t>(n * size.depth + k)];
    }
    const WeightLayout layout { { size.columns, 1 }, { { size.depth, size.columns } } };
    const PackedMatrix right(turned.data(), layout, kernels().panelWidth);
    expectNear(run(left, right, size, kernels()), plainProduct(left, weights, size), 1e-5f);
}

TEST_P(ProductTest, RunsTheEpilogueOnEveryResult)
{
    const Size size { 33, 300, 77 };
    const std::vector<float> left = randomValues(size.rows * size.depth, 1);
    const std::vector<float> weights = randomValues(size.columns * size.depth, 2);
    const std::vector<float> bias = randomValues(size.columns, 3);
    const std::vector<float> residual = randomValues(size.rows * size.columns, 4);
    const PackedMatrix right(halves(weights).data(), columnMajor(size), kernels().panelWidth);

    // relu(product + bias) + residual
    const RowProgram program { 3,
        { { RowOperation::add, 3, 0, 1, 0 }, { RowOperation::relu, 3, 3, 0, 0 }, { RowOperation::add, 3, 3, 2, 0 } } };
    const EpilogueInput inputs[]
        = { { bias.data(), ElementType::real, 0, 1 }, { residual.data(), ElementType::real, size.columns, 1 } };
    const std::vector<float> actual = run(left, right, size, kernels(), { &program, inputs });

    std::vector<float> expected = plainProduct(left, weights, size);
    for (size_t i = 0; i < expected.size(); ++i)
        expected[i] = std::max(expected[i] + bias[i % static_cast<size_t>(size.columns)], 0.0f) + residual[i];
    expectNear(actual, expected, 2e-5f);
}

TEST_P(ProductTest, AddsTheBiasToEveryRow)
{
    for (const Size& size : sizes) {
        const std::vector<float> left = randomValues(size.rows * size.depth, 1);
        const std::vector<float> weights = randomValues(size.columns * size.depth, 2);
        const std::vector<float> bias = randomValues(size.columns, 3);
        const PackedMatrix right(halves(weights).data(), columnMajor(size), kernels().panelWidth);
        const StridedMatrix matrix(left.data(), size.rows, size.depth, size.depth, 1);
        std::vector<float> actual(static_cast<size_t>(size.rows * size.columns));
        std::vector<float> workspace(static_cast<size_t>(productWorkspace(size.rows, size.depth)));
        multiply({ &matrix, &right, actual.data(), size.columns, bias.data(), {}, workspace.data() }, kernels());
        std::vector<float> expected = plainProduct(left, weights, size);
        for (size_t i = 0; i < expected.size(); ++i)
            expected[i] += bias[i % static_cast<size_t>(size.columns)];
        expectNear(actual, expected, 2e-5f);
    }
}

TEST_P(ProductTest, ComputesSomeRowsAlone)
{
    const Size size { 500, 20, 40 };
    constexpr int64_t first = 130, rows = 300;
    const std::vector<float> left = randomValues(size.rows * size.depth, 1);
    const std::vector<float> weights = randomValues(size.columns * size.depth, 2);
    const std::vector<float> residual = randomValues(size.rows, 3);
    const PackedMatrix right(halves(weights).data(), columnMajor(size), kernels().panelWidth);
    const StridedMatrix matrix(left.data(), size.rows, size.depth, size.depth, 1);
    const RowProgram program { 2, { { RowOperation::add, 2, 0, 1, 0 } } };
    const EpilogueInput inputs[] = { { residual.data(), ElementType::real, 1, 0 } };
    std::vector<float> actual(static_cast<size_t>(rows * size.columns));
    std::vector<float> workspace(static_cast<size_t>(productWorkspace(rows, size.depth)));
    multiplyRows({ &matrix, &right, actual.data(), size.columns, nullptr, { &program, inputs }, workspace.data() },
        first, rows, kernels());

    const std::vector<float> whole = plainProduct(left, weights, size);
    std::vector<float> expected;
    for (int64_t row = first; row < first + rows; ++row) {
        for (int64_t column = 0; column < size.columns; ++column)
            expected.push_back(
                whole[static_cast<size_t>(row * size.columns + column)] + residual[static_cast<size_t>(row)]);
    }
    expectNear(actual, expected, 2e-5f);
}

TEST_P(ProductTest, LeavesValuesBetweenTheResultsRowsAlone)
{
    const Size size { 20, 8, 35 };
    const std::vector<float> left = randomValues(size.rows * size.depth, 1);
    const std::vector<float> weights = randomValues(size.columns * size.depth, 2);
    const PackedMatrix right(weights.data(), columnMajor(size), kernels().panelWidth);
    const StridedMatrix matrix(left.data(), size.rows, size.depth, size.depth, 1);
    constexpr int64_t stride = 40;
    std::vector<float> result(static_cast<size_t>(size.rows * stride), 7.0f);
    std::vector<float> workspace(static_cast<size_t>(productWorkspace(size.rows, size.depth)));
    multiply({ &matrix, &right, result.data(), stride, nullptr, {}, workspace.data() }, kernels());
    for (int64_t row = 0; row < size.rows; ++row) {
        for (int64_t column = size.columns; column < stride; ++column)
            EXPECT_EQ(result[static_cast<size_t>(row * stride + column)], 7.0f);
    }
}

TEST_P(ProductTest, ConvolvesByAWindow)
{
    // 2 inputs of 5 x 6 positions, 3 channels; kernel 3 x 2, strides 2 and 1, dilation 1 and 2, padding 1 and 1.
    Window window { .input = nullptr, .batch = 2, .batchStride = 5 * 6 * 3, .channels = 3, .dimensions = {} };
    window.dimensions.push_back(
        { .input = 5, .output = 3, .kernel = 3, .stride = 2, .dilation = 1, .padding = 1, .inputStride = 18 });
    window.dimensions.push_back(
        { .input = 6, .output = 6, .kernel = 2, .stride = 1, .dilation = 2, .padding = 1, .inputStride = 3 });
    const std::vector<float> x = randomValues(2 * 5 * 6 * 3, 5);
    window.input = x.data();
    const Size size { 2 * 3 * 6, 3 * 3 * 2, 4 };
    const std::vector<float> weights = randomValues(size.columns * size.depth, 6); // [4][3 channels][3][2]
    const WeightLayout layout { { 4, 18 }, { { 3, 2 }, { 2, 1 }, { 3, 6 } } };
    const PackedMatrix right(weights.data(), layout, kernels().panelWidth);
    const WindowMatrix matrix(window);
    std::vector<float> actual(static_cast<size_t>(size.rows * size.columns));
    std::vector<float> workspace(static_cast<size_t>(productWorkspace(size.rows, size.depth)));
    multiply({ &matrix, &right, actual.data(), 4, nullptr, {}, workspace.data() }, kernels());

    std::vector<float> expected;
    for (int64_t row = 0; row < size.rows; ++row) {
        for (int64_t out = 0; out < 4; ++out) {
            float sum = 0;
            for (int64_t channel = 0; channel < 3; ++channel) {
                for (int64_t tap = 0; tap < 6; ++tap) {
                    const int64_t y = row / 6 % 3 * 2 - 1 + tap / 2;
                    const int64_t z = row % 6 - 1 + tap % 2 * 2;
                    if (y >= 0 && y < 5 && z >= 0 && z < 6)
                        sum += x[static_cast<size_t>(row / 18 * 90 + y * 18 + z * 3 + channel)]
                            * weights[static_cast<size_t>(out * 18 + channel * 6 + tap)];
                }
            }
            expected.push_back(sum);
        }
    }
    expectNear(actual, expected, 1e-5f);
}

} // namespace

} // namespace MLProgram
