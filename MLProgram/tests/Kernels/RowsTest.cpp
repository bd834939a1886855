// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/Rows.h"

#include "Kernels/KernelTesting.h"

namespace MLProgram {

namespace {

class RowsTest : public EveryKernelSet { };
INSTANTIATE_TEST_SUITE_P(, RowsTest, ::testing::ValuesIn(allKernelsOfThisProcessor()), kernelSetName);

TEST_P(RowsTest, MapsLongRowsInPieces)
{
    constexpr int64_t count = 30'000;
    std::vector<float> x = randomValues(count, 1);
    std::vector<float> y(count);
    Map map { { count }, { 1, { { RowOperation::square, 1, 0, 0, 0 }, { RowOperation::add, 1, 1, 0, 0 } } },
        { { x.data(), ElementType::real, { 1 } } }, { y.data(), ElementType::real, { 1 } } };
    run(map, kernels());
    for (size_t i = 0; i < count; ++i)
        ASSERT_EQ(y[i], x[i] * x[i] + x[i]);
}

TEST_P(RowsTest, BroadcastsConvertsAndScatters)
{
    // y[i][j] = mask[j] ? x[i][j] : count[i], y channels first
    std::vector<float> x = randomValues(6 * 20, 1);
    std::vector<uint8_t> mask(20);
    for (size_t j = 0; j < mask.size(); ++j)
        mask[j] = j % 3 == 0;
    std::vector<int32_t> count { 1, -2, 3, -4, 5, -6 };
    std::vector<float> y(6 * 20);
    const Map map { { 6, 20 }, { 3, { { RowOperation::select, 3, 1, 0, 2 } } },
        { { x.data(), ElementType::real, { 20, 1 } }, { mask.data(), ElementType::boolean, { 0, 1 } },
            { count.data(), ElementType::integer, { 1, 0 } } },
        { y.data(), ElementType::real, { 1, 6 } } };
    run(map, kernels());
    for (size_t i = 0; i < 6; ++i) {
        for (size_t j = 0; j < 20; ++j)
            ASSERT_EQ(y[j * 6 + i], mask[j] != 0 ? x[i * 20 + j] : static_cast<float>(count[i]));
    }
}

TEST_P(RowsTest, WorksInPlace)
{
    std::vector<float> x = randomValues(1000, 1);
    const std::vector<float> before = x;
    const Map map { { 1000 }, { 1, { { RowOperation::negate, 1, 0, 0, 0 }, { RowOperation::relu, 1, 1, 0, 0 } } },
        { { x.data(), ElementType::real, { 1 } } }, { x.data(), ElementType::real, { 1 } } };
    run(map, kernels());
    for (size_t i = 0; i < x.size(); ++i)
        ASSERT_EQ(x[i], std::max(-before[i], 0.0f));
}

TEST_P(RowsTest, SoftmaxTakesScaledScoresAndABias)
{
    constexpr int64_t rows = 5, columns = 33;
    std::vector<float> scores = randomValues(rows * columns, 1, 8.0f);
    std::vector<float> bias = randomValues(columns, 2, 4.0f);
    float scale = 0.25f;
    std::vector<float> actual(scores.size());
    const Map map { { rows, columns }, { 3, { { RowOperation::multiplyAdd, 3, 0, 1, 2 } } },
        { { scores.data(), ElementType::real, { columns, 1 } }, { &scale, ElementType::real, { 0, 0 } },
            { bias.data(), ElementType::real, { 0, 1 } } },
        { actual.data(), ElementType::real, { columns, 1 } } };
    runSoftmax(map, kernels());
    for (size_t row = 0; row < rows; ++row) {
        std::vector<float> expected(columns);
        for (size_t i = 0; i < columns; ++i)
            expected[i] = scores[row * columns + i] * scale + bias[i];
        referenceKernels().softmax(expected.data(), columns);
        expectNear({ actual.begin() + static_cast<std::ptrdiff_t>(row * columns),
                       actual.begin() + static_cast<std::ptrdiff_t>((row + 1) * columns) },
            expected, 1e-6f);
    }
}

TEST_P(RowsTest, LayerNormWalksItsRows)
{
    std::vector<float> x = randomValues(4 * 50, 1);
    std::vector<float> y(4 * 40);
    run(LayerNorm { { 2, 2 }, { x.data(), ElementType::real, { 100, 50 } }, { y.data(), ElementType::real, { 40, 80 } },
            nullptr, nullptr, 40, 1e-5f },
        kernels());
    std::vector<float> expected(40);
    referenceKernels().layerNorm({ x.data() + 50, nullptr, nullptr, expected.data(), 40, 1e-5f });
    expectNear({ y.begin() + 80, y.begin() + 120 }, expected, 1e-5f);
}

TEST_P(RowsTest, DepthwiseConvolvesAlongTime)
{
    constexpr int64_t frames = 11, channels = 20, kernel = 5;
    const std::vector<float> x = randomValues(frames * channels, 1);
    const std::vector<float> weights = randomValues(kernel * channels, 2);
    const std::vector<float> bias = randomValues(channels, 3);
    std::vector<float> y(frames * channels);
    Window window { .input = x.data(), .batch = 1, .batchStride = 0, .channels = channels, .dimensions = {} };
    window.dimensions.push_back({ .input = frames,
        .output = frames,
        .kernel = kernel,
        .stride = 1,
        .dilation = 1,
        .padding = 2,
        .inputStride = channels });
    run(Depthwise { window, weights.data(), bias.data(), y.data(), channels }, kernels());
    std::vector<float> expected;
    for (int64_t frame = 0; frame < frames; ++frame) {
        for (int64_t channel = 0; channel < channels; ++channel) {
            float sum = bias[static_cast<size_t>(channel)];
            for (int64_t tap = 0; tap < kernel; ++tap) {
                const int64_t at = frame + tap - 2;
                if (at >= 0 && at < frames)
                    sum += x[static_cast<size_t>(at * channels + channel)]
                        * weights[static_cast<size_t>(tap * channels + channel)];
            }
            expected.push_back(sum);
        }
    }
    expectNear(y, expected, 1e-5f);
}

TEST(SimplifyMap, MergesWhatLiesTogether)
{
    Map map { { 1, 2, 3, 4 }, {},
        { { nullptr, ElementType::real, { 24, 12, 4, 1 } }, { nullptr, ElementType::real, { 0, 0, 4, 1 } } },
        { nullptr, ElementType::real, { 24, 12, 4, 1 } } };
    simplify(map);
    EXPECT_EQ(map.shape, (Shape { 2, 12 }));
    EXPECT_EQ(map.inputs[1].strides, (Shape { 0, 1 }));
}

TEST(SimplifyMap, KeepsOneDimension)
{
    Map map { {}, {}, { { nullptr, ElementType::real, {} } }, { nullptr, ElementType::real, {} } };
    simplify(map);
    EXPECT_EQ(map.shape, (Shape { 1 }));
}

} // namespace

} // namespace MLProgram
