// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/Indexing.h"

#include "Operations/Shapes.h"

namespace MLProgram {

int64_t sliceNumber(std::span<const int32_t> tuple, std::span<const int64_t> sizes) noexcept
{
    int64_t number = 0;
    for (size_t i = 0; i < sizes.size(); ++i)
        number = number * sizes[i] + positionOf(tuple[i], sizes[i]);
    return number;
}

void requirePositions(const Operands& operands, const TensorView& indices, std::span<const int64_t> sizes)
{
    operands.require(indices.count() == 0 || elementCount(sizes) > 0, "it indexes a dimension that is empty");
}

Shape addressedSlice(const Operands& operands, const Shape& shape, const TensorView& indices, size_t first)
{
    const int64_t width = indices.type.shape.back();
    operands.require(width <= static_cast<int64_t>(shape.size() - first),
        "its tuples of indices are longer than there are dimensions");
    const size_t last = first + static_cast<size_t>(width);
    requirePositions(operands, indices, slice(shape, first, last));
    return slice(shape, last, shape.size());
}

void requireAlignedIndices(const Operands& operands, const Shape& shape, const TensorView& indices, size_t axis)
{
    operands.require(indices.type.shape.size() == shape.size(), "its indices have more or fewer dimensions");
    for (size_t i = 0; i < shape.size(); ++i)
        operands.require(i == axis || indices.type.shape[i] == shape[i],
            "its indices differ in more dimensions than the one they count along");
    requirePositions(operands, indices, { &shape[axis], 1 });
}

} // namespace MLProgram
