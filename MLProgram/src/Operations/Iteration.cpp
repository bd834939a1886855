// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/Iteration.h"

#include "Operations/Numbers.h"

#include <cstring>

namespace MLProgram {

Strides rowMajorStrides(const Shape& shape)
{
    Strides strides(shape.size(), 1);
    for (size_t i = shape.size(); i > 1; --i)
        strides[i - 2] = strides[i - 1] * shape[i - 1];
    return strides;
}

Strides broadcastStrides(const Shape& shape, const Shape& target)
{
    const Strides own = rowMajorStrides(shape);
    Strides strides(target.size(), 0);
    const size_t shift = target.size() - shape.size();
    for (size_t i = 0; i < shape.size(); ++i)
        strides[shift + i] = shape[i] == 1 ? 0 : own[i];
    return strides;
}

void copyElements(
    const Shape& shape, const TensorView& from, const Walk& reading, const TensorView& to, const Walk& writing)
{
    withElementType(from.type.element, [&](auto zero) {
        using T = decltype(zero);
        const T* const source = static_cast<const T*>(from.data) + reading.start;
        T* const target = static_cast<T*>(to.data) + writing.start;
        forEachOffset<2>(
            shape, { reading.strides, writing.strides }, [=](const auto& at) { target[at[1]] = source[at[0]]; });
    });
}

void copyAll(const TensorView& from, const TensorView& to)
{
    std::memcpy(to.data, from.data, static_cast<size_t>(from.count()) * sizeOf(from.type.element));
}

Grouping grouped(const Shape& shape, AxisSet axes)
{
    const Strides strides = rowMajorStrides(shape);
    Grouping grouping;
    for (size_t i = 0; i < shape.size(); ++i) {
        (axes.contains(i) ? grouping.along : grouping.others).push_back(shape[i]);
        (axes.contains(i) ? grouping.alongStrides : grouping.otherStrides).push_back(strides[i]);
    }
    return grouping;
}

Grouping grouped(const Shape& shape, size_t axis)
{
    return grouped(shape, AxisSet { 1u << axis });
}

} // namespace MLProgram
