// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/Rows.h"

#include "Kernels/Workers.h"

#include <algorithm>

namespace MLProgram {

namespace {

// Below this many values a second thread costs more than it brings.
constexpr int64_t valuesWorthThreads = 1 << 14;

// Values of one row that a thread takes at a time.
constexpr int64_t valuesPerPiece = 1 << 13;

// Where values stand for the given index of the first `rank` dimensions of a loop.
int64_t offsetOf(const StridedValues& values, const Shape& shape, size_t rank, int64_t index)
{
    int64_t offset = 0;
    for (size_t i = rank; i-- > 0;) {
        offset += index % shape[i] * values.strides[i];
        index /= shape[i];
    }
    return offset;
}

const void* at(const StridedValues& values, int64_t offset)
{
    return static_cast<const std::byte*>(values.data) + offset * static_cast<int64_t>(sizeOf(values.element));
}

float* resultAt(const StridedValues& values, int64_t offset)
{
    return static_cast<float*>(values.data) + offset;
}

int64_t outerCount(const Shape& shape)
{
    int64_t count = 1;
    for (size_t i = 0; i + 1 < shape.size(); ++i)
        count *= shape[i];
    return count;
}

void runPiece(const Map& map, int64_t row, int64_t start, int64_t count, const KernelSet& kernels)
{
    const size_t rank = map.shape.size() - 1;
    boost::container::static_vector<RowInput, maximumSlots> inputs;
    for (const StridedValues& input : map.inputs) {
        const int64_t step = input.strides[rank];
        const int64_t offset = offsetOf(input, map.shape, rank, row) + start * step;
        inputs.push_back({ at(input, offset), input.element, step });
    }
    const int64_t step = map.output.strides[rank];
    const int64_t offset = offsetOf(map.output, map.shape, rank, row) + start * step;
    runRow(map.program, inputs, { resultAt(map.output, offset), step }, count, kernels);
}

bool canMerge(const StridedValues& values, size_t outer, int64_t innerCount)
{
    return values.strides[outer] == values.strides[outer + 1] * innerCount;
}

bool canMerge(const Map& map, size_t outer)
{
    const int64_t innerCount = map.shape[outer + 1];
    return canMerge(map.output, outer, innerCount)
        && std::all_of(map.inputs.begin(), map.inputs.end(),
            [&](const StridedValues& input) { return canMerge(input, outer, innerCount); });
}

void dropDimension(Map& map, size_t dimension)
{
    const auto drop
        = [dimension](Shape& shape) { shape.erase(shape.begin() + static_cast<std::ptrdiff_t>(dimension)); };
    drop(map.shape);
    drop(map.output.strides);
    for (StridedValues& input : map.inputs)
        drop(input.strides);
}

void convolve(const Depthwise& depthwise, int64_t position, const KernelSet& kernels)
{
    const Window& window = depthwise.window;
    const float* taps[maximumTaps];
    window.lookUp(position, taps);
    kernels.depthwise({ taps, depthwise.weights, depthwise.bias, depthwise.output + position * depthwise.outputStride,
        window.taps(), window.channels });
}

} // namespace

void simplify(Map& map)
{
    for (size_t i = map.shape.size(); i-- > 0;) {
        if (map.shape[i] == 1 && map.shape.size() > 1)
            dropDimension(map, i);
    }
    for (size_t i = map.shape.size(); i-- > 1;) {
        if (!canMerge(map, i - 1))
            continue;
        map.shape[i] *= map.shape[i - 1];
        dropDimension(map, i - 1);
    }
    if (map.shape.empty()) {
        map.shape.push_back(1);
        map.output.strides.push_back(1);
        for (StridedValues& input : map.inputs)
            input.strides.push_back(1);
    }
}

void run(const Map& map, const KernelSet& kernels)
{
    const int64_t rows = outerCount(map.shape);
    const int64_t length = map.shape.back();
    const int64_t pieces = (length + valuesPerPiece - 1) / valuesPerPiece;
    forEachTask(rows * pieces, rows * length > valuesWorthThreads, [&](int64_t i, int) {
        const int64_t start = i % pieces * valuesPerPiece;
        runPiece(map, i / pieces, start, std::min(valuesPerPiece, length - start), kernels);
    });
}

void runSoftmax(const Map& map, const KernelSet& kernels)
{
    const int64_t rows = outerCount(map.shape);
    const int64_t length = map.shape.back();
    forEachTask(rows, rows * length > valuesWorthThreads, [&](int64_t row, int) {
        runPiece(map, row, 0, length, kernels);
        kernels.softmax(resultAt(map.output, offsetOf(map.output, map.shape, map.shape.size() - 1, row)), length);
    });
}

void run(const LayerNorm& norm, const KernelSet& kernels)
{
    const int64_t rows = elementCount(norm.shape);
    const size_t rank = norm.shape.size();
    forEachTask(rows, rows * norm.length > valuesWorthThreads, [&](int64_t row, int) {
        const auto* from = static_cast<const float*>(norm.input.data) + offsetOf(norm.input, norm.shape, rank, row);
        float* to = resultAt(norm.output, offsetOf(norm.output, norm.shape, rank, row));
        kernels.layerNorm({ from, norm.gamma, norm.beta, to, norm.length, norm.epsilon });
    });
}

void run(const Depthwise& depthwise, const KernelSet& kernels)
{
    const Window& window = depthwise.window;
    const int64_t positions = window.positions();
    const int64_t work = positions * window.taps() * window.channels;
    forEachTask(
        positions, work > valuesWorthThreads, [&](int64_t position, int) { convolve(depthwise, position, kernels); });
}

void runAlone(const Depthwise& depthwise, const KernelSet& kernels)
{
    const int64_t positions = depthwise.window.positions();
    for (int64_t position = 0; position < positions; ++position)
        convolve(depthwise, position, kernels);
}

} // namespace MLProgram
