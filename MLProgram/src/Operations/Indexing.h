// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Operations/Operation.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace MLProgram {

// Rules about index operands that gathers and scatters share.

// The position along a dimension of `size` (at least 1) that an index stands for: a negative one counts from the end,
// and what is outside all the same becomes the nearest position.
//
// Example: along 4 positions, -1 stands for 3, 9 for 3 and -9 for 0.
inline int64_t positionOf(int32_t index, int64_t size) noexcept
{
    return std::clamp<int64_t>(index < 0 ? index + size : index, 0, size - 1);
}

// The number, in row-major order, of the slice that a tuple of indices addresses, one for each of `sizes`.
int64_t sliceNumber(std::span<const int32_t> tuple, std::span<const int64_t> sizes) noexcept;

// Refuses indices into dimensions that have no position.
void requirePositions(const Operands& operands, const TensorView& indices, std::span<const int64_t> sizes);

// Tuples of indices, the last dimension of `indices`, address the dimensions of `shape` from `first` on. Gives the
// dimensions of what one tuple addresses; refused when tuples are longer than there are dimensions.
Shape addressedSlice(const Operands& operands, const Shape& shape, const TensorView& indices, size_t first);

// Indices along `axis` of a tensor of `shape`, with as many dimensions, all of the same size but that one.
void requireAlignedIndices(const Operands& operands, const Shape& shape, const TensorView& indices, size_t axis);

// Visits such indices in row-major order, each as the place in the tensor that it stands for.
template <typename Visit>
void forEachAlignedIndex(const TensorView& indices, const Shape& shape, size_t axis, Visit&& visit)
{
    const int64_t outer = elementCount({ shape.data(), axis });
    const int64_t inner = elementCount({ shape.data() + axis + 1, shape.size() - axis - 1 });
    auto index = indices.integers().begin();
    for (int64_t o = 0; o < outer; ++o)
        for (int64_t k = 0; k < indices.type.shape[axis]; ++k)
            for (int64_t i = 0; i < inner; ++i)
                visit((o * shape[axis] + positionOf(*index++, shape[axis])) * inner + i);
}

} // namespace MLProgram
