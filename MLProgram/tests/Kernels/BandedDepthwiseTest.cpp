// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/BandedDepthwise.h"

#include "Kernels/KernelTesting.h"

namespace MLProgram {

namespace {

class BandedDepthwiseTest : public EveryKernelSet { };
INSTANTIATE_TEST_SUITE_P(, BandedDepthwiseTest, ::testing::ValuesIn(allKernelsOfThisProcessor()), kernelSetName);

// A product of depth 3 whose rows are the positions of a map of `channels`, under a moving window.
struct Geometry {
    int64_t channels;
    boost::container::static_vector<WindowDimension, 3> dimensions;
};

WindowDimension dimension(int64_t input, int64_t kernel, int64_t stride, int64_t dilation, int64_t padding)
{
    const int64_t output = (input + 2 * padding - (kernel - 1) * dilation - 1) / stride + 1;
    return { input, output, kernel, stride, dilation, padding, 0 };
}

// Both steps one after the other, and band by band.
void expectBandsAgree(const Geometry& geometry, const KernelSet& kernels)
{
    constexpr int64_t depth = 3;
    Window window {
        .input = nullptr, .batch = 1, .batchStride = 0, .channels = geometry.channels, .dimensions = geometry.dimensions
    };
    int64_t inputs = 1;
    for (size_t i = window.dimensions.size(); i-- > 0;) {
        window.dimensions[i].inputStride = inputs * window.channels;
        inputs *= window.dimensions[i].input;
    }
    const std::vector<float> left = randomValues(inputs * depth, 1);
    const std::vector<float> weights = randomValues(window.channels * depth, 2);
    const std::vector<float> bias = randomValues(window.channels, 3);
    const std::vector<float> taps = randomValues(window.taps() * window.channels, 4);
    const StridedMatrix matrix(left.data(), inputs, depth, depth, 1);
    const PackedMatrix right(
        halves(weights).data(), { { window.channels, depth }, { { depth, 1 } } }, kernels.panelWidth);
    const RowProgram relu { 1, { { RowOperation::relu, 1, 0, 0, 0 } } };

    std::vector<float> whole(static_cast<size_t>(inputs * window.channels));
    std::vector<float> productSpace(static_cast<size_t>(productWorkspace(inputs, depth)));
    Product product { &matrix, &right, whole.data(), window.channels, bias.data(), { &relu, {} }, productSpace.data() };
    multiply(product, kernels);
    std::vector<float> expected(static_cast<size_t>(window.positions() * window.channels));
    Depthwise depthwise { window, taps.data(), nullptr, expected.data(), window.channels };
    depthwise.window.input = whole.data();
    run(depthwise, kernels);

    std::vector<float> actual(expected.size());
    std::vector<float> workspace(static_cast<size_t>(bandedDepthwiseWorkspace(window, depth)));
    product.result = nullptr;
    product.workspace = nullptr;
    depthwise.window.input = nullptr;
    depthwise.output = actual.data();
    run(BandedDepthwise { product, depthwise, workspace.data() }, kernels);
    expectNear(actual, expected, 1e-5f);
}

TEST_P(BandedDepthwiseTest, AgreesWithTheStepsOneByOne)
{
    expectBandsAgree({ 64, { dimension(100, 3, 2, 1, 1), dimension(40, 3, 2, 1, 1) } }, kernels());
    expectBandsAgree({ 70, { dimension(90, 5, 1, 2, 4), dimension(33, 2, 3, 1, 0) } }, kernels());
}

TEST_P(BandedDepthwiseTest, TakesOneDimension)
{
    expectBandsAgree({ 48, { dimension(7000, 9, 1, 1, 4) } }, kernels());
}

TEST_P(BandedDepthwiseTest, TakesBandsThatLieInThePaddingOrAreTheWhole)
{
    expectBandsAgree({ 1024, { dimension(4, 3, 2, 1, 8), dimension(64, 1, 1, 1, 0) } }, kernels());
    expectBandsAgree({ 4, { dimension(5, 3, 1, 1, 1), dimension(6, 3, 1, 1, 1) } }, kernels());
}

} // namespace

} // namespace MLProgram
