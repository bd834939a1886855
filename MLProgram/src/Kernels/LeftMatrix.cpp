// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/LeftMatrix.h"

#include "Kernels/KernelSet.h"
#include "Kernels/Transpose.h"

#include <algorithm>
#include <span>

namespace MLProgram {

void StridedMatrix::packTile(int64_t first, int64_t count, float* to) const
{
    const float* from = values_ + first * rowStride_;
    if (depthStride_ == 1) {
        const float* starts[maximumTileRows];
        for (int64_t row = 0; row < count; ++row)
            starts[row] = from + row * rowStride_;
        return transposeRows(starts, count, depth_, to, count);
    }
    for (int64_t k = 0; k < depth_; ++k) {
        for (int64_t row = 0; row < count; ++row)
            to[k * count + row] = from[row * rowStride_ + k * depthStride_];
    }
}

int64_t Window::positions() const noexcept
{
    int64_t count = batch;
    for (const WindowDimension& dimension : dimensions)
        count *= dimension.output;
    return count;
}

int64_t Window::taps() const noexcept
{
    int64_t count = 1;
    for (const WindowDimension& dimension : dimensions)
        count *= dimension.kernel;
    return count;
}

namespace {

// The taps at the positions of one dimension, and of those inside it; null stands for all that lie in the padding.
const float** lookUpDimension(std::span<const WindowDimension> dimensions, std::span<const int64_t> starts,
    const float* input, const float** taps) noexcept
{
    if (dimensions.empty()) {
        *taps = input;
        return taps + 1;
    }
    const WindowDimension& dimension = dimensions.front();
    for (int64_t i = 0; i < dimension.kernel; ++i) {
        const int64_t at = starts.front() + i * dimension.dilation;
        const bool isInside = input != nullptr && at >= 0 && at < dimension.input;
        taps = lookUpDimension(
            dimensions.subspan(1), starts.subspan(1), isInside ? input + at * dimension.inputStride : nullptr, taps);
    }
    return taps;
}

} // namespace

void Window::lookUp(int64_t position, const float** taps) const noexcept
{
    boost::container::static_vector<int64_t, 3> starts(dimensions.size());
    for (size_t i = dimensions.size(); i-- > 0;) {
        starts[i] = position % dimensions[i].output * dimensions[i].stride - dimensions[i].padding;
        position /= dimensions[i].output;
    }
    lookUpDimension(dimensions, starts, input + position * batchStride, taps);
}

void WindowMatrix::packTile(int64_t first, int64_t count, float* to) const
{
    const int64_t tapCount = window_.taps();
    const float* taps[maximumTileRows][maximumTaps];
    for (int64_t row = 0; row < count; ++row)
        window_.lookUp(first + row, taps[row]);
    for (int64_t tap = 0; tap < tapCount; ++tap) {
        const float* starts[maximumTileRows];
        for (int64_t row = 0; row < count; ++row)
            starts[row] = taps[row][tap];
        float* const target = to + tap * window_.channels * count;
        if (window_.channels == 1)
            std::transform(starts, starts + count, target, [](const float* x) { return x == nullptr ? 0.0f : *x; });
        else
            transposeRows(starts, count, window_.channels, target, count);
    }
}

} // namespace MLProgram
