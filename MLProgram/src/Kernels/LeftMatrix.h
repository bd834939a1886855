// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <boost/container/static_vector.hpp>

#include <cstdint>

namespace MLProgram {

// The left-hand matrix [rows][depth] of a product, which the product reads once, in tiles of a few rows.
class LeftMatrix {
public:
    virtual ~LeftMatrix() = default;

    virtual int64_t rows() const noexcept = 0;
    virtual int64_t depth() const noexcept = 0;

    // to[k][i] = value (first + i, k) for `count` rows; to is dense.
    virtual void packTile(int64_t first, int64_t count, float* to) const = 0;
};

// Values at fixed strides.
class StridedMatrix final : public LeftMatrix {
public:
    StridedMatrix(const float* values, int64_t rows, int64_t rowStride, int64_t depth, int64_t depthStride)
        : values_(values)
        , rows_(rows)
        , rowStride_(rowStride)
        , depth_(depth)
        , depthStride_(depthStride)
    {
    }

    int64_t rows() const noexcept override { return rows_; }
    int64_t depth() const noexcept override { return depth_; }
    void packTile(int64_t first, int64_t count, float* to) const override;

private:
    const float* values_;
    int64_t rows_;
    int64_t rowStride_;
    int64_t depth_;
    int64_t depthStride_;
};

// What a convolution's window sees along one spatial dimension.
struct WindowDimension {
    int64_t input = 1; // positions of the input
    int64_t output = 1;
    int64_t kernel = 1;
    int64_t stride = 1;
    int64_t dilation = 1;
    int64_t padding = 0; // before the first position
    int64_t inputStride = 0; // values between positions of the input
};

// A channels-last input [batch][position...][channels] under a moving window.
struct Window {
    const float* input = nullptr;
    int64_t batch = 1;
    int64_t batchStride = 0;
    int64_t channels = 1; // the channels of one position lie together
    boost::container::static_vector<WindowDimension, 3> dimensions;

    int64_t positions() const noexcept; // output positions of all of the batch
    int64_t taps() const noexcept; // positions under the window

    // taps[t]: the input position that tap t of the window sees at an output position; null in the padding.
    void lookUp(int64_t position, const float** taps) const noexcept;
};

// Rows are output positions; the depth is the taps' channels, one tap after the other.
class WindowMatrix final : public LeftMatrix {
public:
    explicit WindowMatrix(const Window& window)
        : window_(window)
    {
    }

    int64_t rows() const noexcept override { return window_.positions(); }
    int64_t depth() const noexcept override { return window_.taps() * window_.channels; }
    void packTile(int64_t first, int64_t count, float* to) const override;

private:
    Window window_;
};

// Most taps of a window.
constexpr int64_t maximumTaps = 256;

} // namespace MLProgram
