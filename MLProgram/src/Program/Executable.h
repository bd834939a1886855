// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Tensor/Tensor.h"

#include <span>

namespace MLProgram {

// A function of a program, ready to run. One thread at a time.
class Executable {
public:
    virtual ~Executable() = default;

    // `inputs` in the order of the function's parameters, states left out; every one known, of the element type
    // of its parameter, its shape checked against the declared one. Returns the outputs in the function's order;
    // they stay where they are until the next call, or refer to an input that is an output as well.
    //
    // With the shapes of an earlier call nothing is allocated.
    //
    // Errors: MLModelError (invalidProgram) an operation does not fit its operands; (outOfMemory).
    virtual std::span<const TensorView> run(std::span<const TensorView> inputs) = 0;
};

} // namespace MLProgram
