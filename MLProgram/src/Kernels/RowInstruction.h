// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>

namespace MLProgram {

// What is done to one value, or to values at the same place of two or three rows. With the IEEE meaning; where the
// fast sets approximate (exponential and its relatives) the error is below 4 units in the last place.
enum class RowOperation : uint8_t {
    copy,
    add,
    subtract,
    multiply,
    divide,
    minimum,
    maximum,
    multiplyAdd, // a · b + c, rounded once or twice
    select, // a != 0 ? b : c
    negate,
    absolute,
    square,
    squareRoot,
    reciprocalSquareRoot, // 1 / sqrt(a)
    reciprocal,
    relu,
    exponential,
    sigmoid,
    silu,
    tangentHyperbolic,
    logarithm,
    errorFunction
};

constexpr int operandCount(RowOperation operation) noexcept
{
    if (operation == RowOperation::multiplyAdd || operation == RowOperation::select)
        return 3;
    return operation >= RowOperation::add && operation <= RowOperation::maximum ? 2 : 1;
}

// One operand of a row: `count` values, or one value for all of them. Such a uniform value stands
// uniformCopies times in a row, so that a register can be loaded from it.
struct RowOperand {
    const float* values = nullptr;
    bool isUniform = false;
};

constexpr int64_t uniformCopies = 16;

// result may be the same row as an operand.
struct RowOperands {
    RowOperation operation = RowOperation::copy;
    RowOperand a;
    RowOperand b;
    RowOperand c;
    float* result = nullptr;
    int64_t count = 0;
};

struct LayerNormRow {
    const float* from = nullptr;
    const float* gamma = nullptr; // null: 1
    const float* beta = nullptr; // null: 0
    float* to = nullptr;
    int64_t count = 0;
    float epsilon = 0;
};

struct DepthwisePosition {
    const float* const* taps = nullptr; // [tapCount] rows of channels; null where the tap lies in the padding
    const float* weights = nullptr; // [tapCount][channels]
    const float* bias = nullptr; // [channels], or null
    float* to = nullptr;
    int64_t tapCount = 0;
    int64_t channels = 0;
};

} // namespace MLProgram
