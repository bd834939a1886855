// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/ScalarType.h"
#include "Tensor/Tensor.h"

#include <MLProgram/MLMultiArray.h>

namespace MLProgram {

// True when the array's own storage can serve as a tensor of that element type.
bool isHeldAs(const MLMultiArray& array, ElementType element) noexcept;

// Copies an array into a tensor of as many elements, as values of the type that the program declares: rounded to
// 16 bits for `fp16`, cut off at the point and at the ends of the range for integers, 0 or 1 for booleans.
void convert(const MLMultiArray& from, ScalarType declared, const TensorView& to);

// True when values of that element type can be stored in an array of that type: real numbers in a floating-point
// one, others in any.
bool canStore(ElementType element, MLMultiArrayDataType type) noexcept;

// Copies a tensor into an array of as many elements, rounded or cut off to its type.
void convert(const TensorView& from, MLMultiArray& to);

} // namespace MLProgram
