// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/LeftMatrix.h"

#include "Kernels/KernelSet.h"
#include "Kernels/Transpose.h"

#include <algorithm>

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

void Window::lookUp(int64_t position, const float** taps) const noexcept
{
    boost::container::static_vector<int64_t, 3> start(dimensions.size());
    for (size_t i = dimensions.size(); i-- > 0;) {
        start[i] = position % dimensions[i].output * dimensions[i].stride - dimensions[i].padding;
        position /= dimensions[i].output;
    }
    const float* sample = input + position * batchStride;
    const int64_t tapCount = this->taps();
    for (int64_t tap = 0; tap < tapCount; ++tap) {
        int64_t rest = tap;
        int64_t offset = 0;
        bool isInside = true;
        for (size_t i = dimensions.size(); i-- > 0;) {
            const WindowDimension& dimension = dimensions[i];
            const int64_t at = start[i] + rest % dimension.kernel * dimension.dilation;
            rest /= dimension.kernel;
            isInside = isInside && at >= 0 && at < dimension.input;
            offset += at * dimension.inputStride;
        }
        taps[tap] = isInside ? sample + offset : nullptr;
    }
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
        transposeRows(starts, count, window_.channels, to + tap * window_.channels * count, count);
    }
}

} // namespace MLProgram
