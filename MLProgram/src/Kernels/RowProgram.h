// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/KernelSet.h"
#include "Tensor/Tensor.h"

#include <boost/container/small_vector.hpp>

#include <cstdint>
#include <span>

namespace MLProgram {

// A chain of element-wise operations that is computed in one pass: no intermediate result leaves the first-level
// cache. Slots 0 to inputCount - 1 are the inputs; the others hold intermediate results. The last instruction
// gives the result.
//
// Example: x · sigmoid(x) + y, with x in slot 0 and y in slot 1, is
//   { sigmoid, result 2, a 0 }, { multiplyAdd, result 2, a 0, b 2, c 1 }.
struct RowProgram {
    struct Instruction {
        RowOperation operation = RowOperation::copy;
        uint8_t result = 0;
        uint8_t a = 0;
        uint8_t b = 0;
        uint8_t c = 0;
    };

    int inputCount = 0;
    boost::container::small_vector<Instruction, 6> instructions;
};

constexpr int maximumSlots = 16;

// One input of a row: `step` values lie between consecutive elements, 0 for one value that serves the whole row.
// Integers and booleans are converted; a boolean is 0 or 1.
struct RowInput {
    const void* data = nullptr;
    ElementType element = ElementType::real;
    int64_t step = 1;
};

struct RowOutput {
    float* data = nullptr;
    int64_t step = 1;
};

// Computes one row. The output may be the very memory of an input with the same step.
void runRow(const RowProgram& program, std::span<const RowInput> inputs, const RowOutput& output, int64_t count,
    const KernelSet& kernels);

} // namespace MLProgram
