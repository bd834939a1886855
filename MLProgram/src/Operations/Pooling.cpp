// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Operations that make one value of each window of a channel.
#include "Operations/Definitions.h"
#include "Operations/Shapes.h"
#include "Operations/Windows.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace MLProgram {

namespace {

Shape kernelOf(const Operands& operands)
{
    const auto sizes = operands.integers("kernel_sizes");
    operands.require(sizes.size() <= mostSpatialDimensions, "\"kernel_sizes\" has too many numbers");
    return { sizes.begin(), sizes.end() };
}

Windows poolingWindows(const Operands& operands)
{
    const auto direction = operands.flag("ceil_mode", false) ? Direction::ceilingPooling : Direction::floorPooling;
    return windowsOf(operands, operands.tensor("x").type.shape, kernelOf(operands), direction);
}

TensorTypes inferPooling(const Operands& operands)
{
    Shape shape = realTensor(operands, "x").type.shape;
    const Windows windows = poolingWindows(operands);
    for (size_t i = 2; i < shape.size(); ++i)
        shape[i] = windows[mostSpatialDimensions - shape.size() + i].output;
    return { outputType(operands, ElementType::real, shape) };
}

TensorTypes inferAverage(const Operands& operands)
{
    operands.flag("exclude_padding_from_average", false);
    return inferPooling(operands);
}

// Sets each value of the output to valueOf(visitCovered), where visitCovered calls its argument with each value of "x"
// that the window covers.
template <typename ValueOf> void poolWindows(const Operands& operands, const TensorView& output, ValueOf&& valueOf)
{
    const TensorView& x = operands.tensor("x");
    const Windows windows = poolingWindows(operands);
    const int64_t channelSize = countBetween(x.type.shape, 2, x.type.shape.size());
    const float* channel = x.reals().data();
    auto to = output.reals().begin();
    for (; to != output.reals().end(); channel += channelSize)
        forEachPosition(windows, [&](const auto& position) {
            *to++ = valueOf([&](auto&& visit) {
                forEachCovered(windows, position, [&](int64_t, int64_t inInput) { visit(channel[inInput]); });
            });
        });
}

// Padding never is the maximum.
void evaluateMaximum(const Operands& operands, std::span<const TensorView> outputs)
{
    poolWindows(operands, outputs[0], [](auto&& visitCovered) {
        float highest = -std::numeric_limits<float>::infinity();
        visitCovered([&](float x) { highest = std::max(highest, x); });
        return highest;
    });
}

// Padding counts as zeros, or not at all; a window that covers nothing has the average 0.
void evaluateAverage(const Operands& operands, std::span<const TensorView> outputs)
{
    const bool excludesPadding = operands.flag("exclude_padding_from_average", false);
    float size = 1;
    for (const int64_t length : kernelOf(operands))
        size *= static_cast<float>(length);
    poolWindows(operands, outputs[0], [=](auto&& visitCovered) {
        float sum = 0;
        int64_t covered = 0;
        visitCovered([&](float x) {
            sum += x;
            ++covered;
        });
        return covered == 0 ? 0 : sum / (excludesPadding ? static_cast<float>(covered) : size);
    });
}

// The square root of the sum of squares.
void evaluateNorm(const Operands& operands, std::span<const TensorView> outputs)
{
    poolWindows(operands, outputs[0], [](auto&& visitCovered) {
        float sum = 0;
        visitCovered([&](float x) { sum += x * x; });
        return std::sqrt(sum);
    });
}

constexpr OperationDefinition definitions[] = {
    { "avg_pool", inferAverage, evaluateAverage },
    { "l2_pool", inferPooling, evaluateNorm },
    { "max_pool", inferPooling, evaluateMaximum },
};

} // namespace

Definitions poolings() noexcept
{
    return definitions;
}

} // namespace MLProgram
