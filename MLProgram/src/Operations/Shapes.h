// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Operations/Operation.h"

#include <string_view>

namespace MLProgram {

// Rules about types, dimensions and axes that many operations share. Each refuses on behalf of `operands`.

// The type of an output; refused when a dimension is negative or the tensor would be larger than any may be.
TensorType outputType(const Operands& operands, ElementType element, const Shape& shape);

// The tensor operand `name`, whose elements must be real; whose elements must be numbers; which must have at least
// `rank` dimensions.
const TensorView& realTensor(const Operands& operands, std::string_view name);
const TensorView& integerTensor(const Operands& operands, std::string_view name);
const TensorView& numericTensor(const Operands& operands, std::string_view name);
void requireRank(const Operands& operands, const TensorView& tensor, size_t least, size_t most = maximumRank);

// The optional tensor operand `name`, which, when it is there, must be of that type exactly.
const TensorView* optionalTensor(const Operands& operands, std::string_view name, const TensorType& expected);

// `axis` counted from the front; refused unless it is one of `rank` dimensions.
size_t normalisedAxis(const Operands& operands, int64_t axis, size_t rank);
size_t axisOperand(const Operands& operands, std::string_view name, int64_t otherwise, size_t rank);

// Which dimensions the operand `name` lists; all of them when it is absent. Refused when one is listed twice.
struct AxisSet {
    uint32_t bits = 0;

    bool contains(size_t axis) const noexcept { return (bits >> axis & 1) != 0; }
    size_t size() const noexcept;
};
AxisSet axesOperand(const Operands& operands, std::string_view name, size_t rank);

// Both shapes aligned on the right, dimensions of 1 stretched.
Shape broadcastShape(const Operands& operands, const Shape& x, const Shape& y);

// Product of shape[first .. last).
int64_t countBetween(const Shape& shape, size_t first, size_t last) noexcept;

// shape[first .. last), and two shapes after each other; refused when that has too many dimensions.
Shape slice(const Shape& shape, size_t first, size_t last);
Shape joined(const Operands& operands, const Shape& front, const Shape& back);

} // namespace MLProgram
