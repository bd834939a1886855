// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Operations/Shapes.h"
#include "Tensor/Tensor.h"

#include <algorithm>
#include <array>

namespace MLProgram {

// How far apart, in elements, neighbours along each dimension stand.
using Strides = Shape;

// Those of a dense row-major tensor. Example: { 2, 3, 4 } gives { 12, 4, 1 }.
Strides rowMajorStrides(const Shape& shape);

// Those with which a tensor of `shape` is read as if it were stretched to `target`: 0 along stretched dimensions.
Strides broadcastStrides(const Shape& shape, const Shape& target);

// Visits every index of `shape` in row-major order, and hands over where it stands in each of several tensors.
//
// Example: the strides { 1, 3 } with the shape { 3, 2 } visit the offsets 0 3 1 4 2 5, a transposition.
template <size_t tensors, typename Visit>
void forEachOffset(const Shape& shape, const std::array<Strides, tensors>& strides, Visit&& visit)
{
    if (elementCount(shape) == 0)
        return;
    std::array<int64_t, tensors> offsets {};
    Shape index(shape.size(), 0);
    for (;;) {
        visit(offsets);
        size_t dimension = shape.size();
        do {
            if (dimension == 0)
                return;
            --dimension;
            const bool wraps = ++index[dimension] == shape[dimension];
            for (size_t i = 0; i < tensors; ++i)
                offsets[i] += strides[i][dimension] * (wraps ? 1 - shape[dimension] : 1);
            if (wraps)
                index[dimension] = 0;
        } while (index[dimension] == 0);
    }
}

// Sets each element of the output to function of the same element of the operand "x".
template <typename T, typename Function>
void mapElements(const Operands& operands, const TensorView& output, Function function)
{
    std::ranges::transform(operands.tensor("x").values<const T>(), output.values<T>().begin(), function);
}

// A way through a tensor: where it starts, in elements, and the steps along each dimension.
struct Walk {
    int64_t start = 0;
    Strides strides;
};

// Copies an element from one way to the other for each index of `shape`; both tensors hold elements of one type.
void copyElements(
    const Shape& shape, const TensorView& from, const Walk& reading, const TensorView& to, const Walk& writing);

// Copies everything; the tensors have the same number of elements of one type.
void copyAll(const TensorView& from, const TensorView& to);

// A tensor's dimensions in two groups: those along some axes, and the others. Operations that work along axes visit
// the others first and the axes within.
struct Grouping {
    Shape others;
    Strides otherStrides;
    Shape along;
    Strides alongStrides;

    // Visits every index of the other dimensions, in row-major order, with its offset.
    template <typename Visit> void forEachOther(Visit&& visit) const
    {
        forEachOffset<1>(others, { otherStrides }, [&](const auto& offsets) { visit(offsets[0]); });
    }

    // Visits every index along the axes with its offset from `base`.
    template <typename Visit> void forEachAlong(int64_t base, Visit&& visit) const
    {
        forEachOffset<1>(along, { alongStrides }, [&](const auto& offsets) { visit(base + offsets[0]); });
    }
};

Grouping grouped(const Shape& shape, AxisSet axes);
Grouping grouped(const Shape& shape, size_t axis);

} // namespace MLProgram
