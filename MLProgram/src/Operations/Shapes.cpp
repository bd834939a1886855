// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/Shapes.h"

#include <algorithm>
#include <bit>
#include <string>

namespace MLProgram {

namespace {

std::string quoted(std::string_view name)
{
    return '"' + std::string(name) + '"';
}

} // namespace

TensorType outputType(const Operands& operands, ElementType element, const Shape& shape)
{
    int64_t count = 1;
    for (const int64_t dimension : shape) {
        operands.require(dimension >= 0, "a dimension of its output is negative");
        operands.require(dimension <= maximumElementCount, "a dimension of its output is too large");
        count = std::min(count, maximumElementCount + 1) * std::max<int64_t>(dimension, 1);
    }
    operands.require(count <= maximumElementCount, "its output is too large");
    return { element, shape };
}

const TensorView& realTensor(const Operands& operands, std::string_view name)
{
    const TensorView& tensor = operands.tensor(name);
    if (tensor.type.element != ElementType::real)
        operands.refuse(quoted(name) + " must hold real numbers");
    return tensor;
}

const TensorView& integerTensor(const Operands& operands, std::string_view name)
{
    const TensorView& tensor = operands.tensor(name);
    if (tensor.type.element != ElementType::integer)
        operands.refuse(quoted(name) + " must hold integers");
    return tensor;
}

const TensorView& numericTensor(const Operands& operands, std::string_view name)
{
    const TensorView& tensor = operands.tensor(name);
    if (tensor.type.element == ElementType::boolean)
        operands.refuse(quoted(name) + " must hold numbers");
    return tensor;
}

void requireRank(const Operands& operands, const TensorView& tensor, size_t least, size_t most)
{
    const size_t rank = tensor.type.shape.size();
    if (rank < least || rank > most)
        operands.refuse("it does not work on tensors of rank " + std::to_string(rank));
}

const TensorView* optionalTensor(const Operands& operands, std::string_view name, const TensorType& expected)
{
    const TensorView* const tensor = operands.optionalTensor(name);
    if (tensor != nullptr && !(tensor->type == expected))
        operands.refuse(quoted(name) + " is not of the type that the other operands ask for");
    return tensor;
}

size_t normalisedAxis(const Operands& operands, int64_t axis, size_t rank)
{
    const auto signedRank = static_cast<int64_t>(rank);
    if (axis < -signedRank || axis >= signedRank)
        operands.refuse("the axis " + std::to_string(axis) + " is not one of " + std::to_string(rank));
    return static_cast<size_t>(axis < 0 ? axis + signedRank : axis);
}

size_t axisOperand(const Operands& operands, std::string_view name, int64_t otherwise, size_t rank)
{
    return normalisedAxis(operands, operands.integer(name, otherwise), rank);
}

size_t AxisSet::size() const noexcept
{
    return static_cast<size_t>(std::popcount(bits));
}

AxisSet axesOperand(const Operands& operands, std::string_view name, size_t rank)
{
    const auto listed = operands.optionalIntegers(name);
    if (!listed)
        return { (1u << rank) - 1 };
    AxisSet axes;
    for (const int32_t axis : *listed) {
        const size_t normalised = normalisedAxis(operands, axis, rank);
        operands.require(!axes.contains(normalised), "an axis is listed twice");
        axes.bits |= 1u << normalised;
    }
    return axes;
}

Shape broadcastShape(const Operands& operands, const Shape& x, const Shape& y)
{
    const Shape& longer = x.size() >= y.size() ? x : y;
    const Shape& shorter = x.size() >= y.size() ? y : x;
    Shape shape = longer;
    const size_t shift = longer.size() - shorter.size();
    for (size_t i = 0; i < shorter.size(); ++i) {
        int64_t& dimension = shape[shift + i];
        operands.require(dimension == shorter[i] || dimension == 1 || shorter[i] == 1,
            "the dimensions of its operands cannot be stretched to each other");
        dimension = dimension == 1 ? shorter[i] : dimension;
    }
    return shape;
}

int64_t countBetween(const Shape& shape, size_t first, size_t last) noexcept
{
    return elementCount({ shape.data() + first, last - first });
}

Shape slice(const Shape& shape, size_t first, size_t last)
{
    return { shape.begin() + static_cast<std::ptrdiff_t>(first), shape.begin() + static_cast<std::ptrdiff_t>(last) };
}

Shape joined(const Operands& operands, const Shape& front, const Shape& back)
{
    operands.require(front.size() + back.size() <= maximumRank, "its output has too many dimensions");
    Shape shape = front;
    shape.insert(shape.end(), back.begin(), back.end());
    return shape;
}

} // namespace MLProgram
