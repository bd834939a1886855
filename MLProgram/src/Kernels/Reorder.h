// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Tensor/Tensor.h"

namespace MLProgram {

// Copies 32-bit values (real or integer) or booleans from one arrangement of a shape to another; strides in values.
struct Reorder {
    Shape shape;
    ElementType element = ElementType::real;
    const void* from = nullptr;
    Shape fromStrides;
    void* to = nullptr;
    Shape toStrides;
};

void run(const Reorder& reorder);

} // namespace MLProgram
