// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Tensor/Tensor.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace MLProgram {

using BufferIndex = uint32_t;

// Where a value of the program lies: a shape over a buffer, at any strides. Operations that only move data (a
// transposition, a split, most reshapes) give another view of the same buffer and cost nothing.
//
// A [1, channels, 1, time] value that a convolution wrote channels last has the strides { .., 1, .., channels }.
struct View {
    BufferIndex buffer = 0;
    ElementType element = ElementType::real;
    int64_t offset = 0; // in values, like the strides
    Shape shape;
    Shape strides;

    int64_t count() const noexcept { return elementCount(shape); }
    bool isDense() const noexcept; // row-major without gaps
};

// Row-major strides.
Shape denseStrides(const Shape& shape);

// Strides of a tensor without gaps whose dimensions lie in memory in this order, the last innermost.
Shape orderedStrides(const Shape& shape, std::span<const size_t> order);

// The dimensions of a shape in order, without one, and with it at the end.
std::vector<size_t> orderWithLast(size_t rank, size_t last);

// The order in which a view's dimensions lie in memory, the innermost last; dimensions of 1 come first.
std::vector<size_t> memoryOrder(const View& view);

View transposed(const View& view, std::span<const int32_t> permutation);

// Nothing when the values of the new shape do not lie at even distances.
std::optional<View> reshaped(const View& view, const Shape& shape);

// As an operand of an element-wise operation of `shape`: aligned on the right, stride 0 where it is stretched.
View broadcast(const View& view, const Shape& shape);

// Part of one dimension.
View narrowed(const View& view, size_t axis, int64_t first, int64_t count, int64_t step = 1);

// The common distance of the indices of some dimensions, taken together in order: nothing when they do not lie at
// even distances. Dimensions of 1 do not matter; no dimension at all gives 0.
std::optional<int64_t> commonStride(const View& view, std::span<const size_t> dimensions);

} // namespace MLProgram
