// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/KernelSet.h"

#include <algorithm>
#include <cmath>

namespace MLProgram {

namespace {

using PlatformSupport::Float16;

constexpr int64_t referenceTileRows = 4;
constexpr int64_t referencePanelWidth = 16;

float widened(float value)
{
    return value;
}
float widened(Float16 value)
{
    return PlatformSupport::toFloat(value);
}

template <typename Weight> void multiplyTile(const Tile& tile)
{
    const auto* b = static_cast<const Weight*>(tile.b);
    for (int64_t row = 0; row < tile.rows; ++row) {
        for (int64_t column = 0; column < referencePanelWidth; ++column) {
            float& result = tile.c[row * tile.cStride + column];
            float sum = tile.accumulate ? result : (tile.start == nullptr ? 0.0f : tile.start[column]);
            for (int64_t k = 0; k < tile.depth; ++k)
                sum += tile.a[k * tile.rows + row] * widened(b[k * referencePanelWidth + column]);
            result = sum;
        }
    }
}

void widen(const Float16* from, float* to, int64_t count)
{
    for (int64_t i = 0; i < count; ++i)
        to[i] = widened(from[i]);
}

float sigmoid(float x)
{
    return 1.0f / (1.0f + std::exp(-x));
}

float apply(RowOperation operation, float a, float b, float c)
{
    switch (operation) {
    case RowOperation::copy:
        return a;
    case RowOperation::add:
        return a + b;
    case RowOperation::subtract:
        return a - b;
    case RowOperation::multiply:
        return a * b;
    case RowOperation::divide:
        return a / b;
    case RowOperation::minimum:
        return std::min(a, b);
    case RowOperation::maximum:
        return std::max(a, b);
    case RowOperation::multiplyAdd:
        return a * b + c;
    case RowOperation::select:
        return a != 0 ? b : c;
    case RowOperation::negate:
        return -a;
    case RowOperation::absolute:
        return std::fabs(a);
    case RowOperation::square:
        return a * a;
    case RowOperation::squareRoot:
        return std::sqrt(a);
    case RowOperation::reciprocalSquareRoot:
        return 1.0f / std::sqrt(a);
    case RowOperation::reciprocal:
        return 1.0f / a;
    case RowOperation::relu:
        return std::max(a, 0.0f);
    case RowOperation::exponential:
        return std::exp(a);
    case RowOperation::sigmoid:
        return sigmoid(a);
    case RowOperation::silu:
        return a * sigmoid(a);
    case RowOperation::tangentHyperbolic:
        return std::tanh(a);
    case RowOperation::logarithm:
        return std::log(a);
    case RowOperation::errorFunction:
        return std::erf(a);
    }
    return a;
}

float at(const RowOperand& operand, int64_t index)
{
    return operand.values == nullptr ? 0.0f : operand.values[operand.isUniform ? 0 : index];
}

void rowInstruction(const RowOperands& row)
{
    for (int64_t i = 0; i < row.count; ++i)
        row.result[i] = apply(row.operation, at(row.a, i), at(row.b, i), at(row.c, i));
}

void softmax(float* row, int64_t count)
{
    if (count == 0)
        return;
    const float largest = *std::max_element(row, row + count);
    float sum = 0;
    for (int64_t i = 0; i < count; ++i) {
        row[i] = std::exp(row[i] - largest);
        sum += row[i];
    }
    for (int64_t i = 0; i < count; ++i)
        row[i] /= sum;
}

void layerNorm(const LayerNormRow& row)
{
    const auto count = static_cast<float>(row.count);
    float sum = 0;
    for (int64_t i = 0; i < row.count; ++i)
        sum += row.from[i];
    const float mean = sum / count;
    float squares = 0;
    for (int64_t i = 0; i < row.count; ++i)
        squares += (row.from[i] - mean) * (row.from[i] - mean);
    const float scale = 1.0f / std::sqrt(squares / count + row.epsilon);
    for (int64_t i = 0; i < row.count; ++i) {
        const float gamma = row.gamma == nullptr ? 1.0f : row.gamma[i];
        const float beta = row.beta == nullptr ? 0.0f : row.beta[i];
        row.to[i] = (row.from[i] - mean) * scale * gamma + beta;
    }
}

void depthwise(const DepthwisePosition& position)
{
    for (int64_t channel = 0; channel < position.channels; ++channel) {
        float sum = position.bias == nullptr ? 0.0f : position.bias[channel];
        for (int64_t tap = 0; tap < position.tapCount; ++tap) {
            if (position.taps[tap] != nullptr)
                sum += position.taps[tap][channel] * position.weights[tap * position.channels + channel];
        }
        position.to[channel] = sum;
    }
}

constexpr KernelSet reference {
    .name = "Reference",
    .tileRows = referenceTileRows,
    .panelWidth = referencePanelWidth,
    .tile = multiplyTile<float>,
    .tileOfHalves = multiplyTile<Float16>,
    .widen = widen,
    .rowInstruction = rowInstruction,
    .softmax = softmax,
    .layerNorm = layerNorm,
    .depthwise = depthwise,
};

} // namespace

const KernelSet& referenceKernels() noexcept
{
    return reference;
}

} // namespace MLProgram
