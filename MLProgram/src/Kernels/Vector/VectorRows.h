// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/RowInstruction.h"
#include "Kernels/Vector/VectorMath.h"

#include <math.h> // NOLINT(modernize-deprecated-headers): the functions of C, none of them inline

namespace MLProgram {

// Calls body(start, length) for pieces of a row; all but the last are a whole register.
template <typename Vector, typename Body> void forEachRegister(int64_t count, const Body& body)
{
    int64_t i = 0;
    for (; i + Vector::width <= count; i += Vector::width)
        body(i, Vector::width);
    if (i < count)
        body(i, count - i);
}

template <typename Vector> typename Vector::Register loadPiece(const float* from, int64_t length)
{
    return length == Vector::width ? Vector::load(from) : Vector::load(from, length);
}

template <typename Vector> void storePiece(float* to, typename Vector::Register x, int64_t length)
{
    if (length == Vector::width)
        Vector::store(to, x);
    else
        Vector::store(to, x, length);
}

template <typename Vector>
typename Vector::Register loadOperand(const RowOperand& operand, int64_t start, int64_t length)
{
    return operand.isUniform ? Vector::load(operand.values) : loadPiece<Vector>(operand.values + start, length);
}

template <typename Vector, typename Function> void mapOne(const RowOperands& row, const Function& function)
{
    forEachRegister<Vector>(row.count, [&](int64_t start, int64_t length) {
        storePiece<Vector>(row.result + start, function(loadOperand<Vector>(row.a, start, length)), length);
    });
}

template <typename Vector, typename Function> void mapTwo(const RowOperands& row, const Function& function)
{
    forEachRegister<Vector>(row.count, [&](int64_t start, int64_t length) {
        const auto a = loadOperand<Vector>(row.a, start, length);
        const auto b = loadOperand<Vector>(row.b, start, length);
        storePiece<Vector>(row.result + start, function(a, b), length);
    });
}

template <typename Vector, typename Function> void mapThree(const RowOperands& row, const Function& function)
{
    forEachRegister<Vector>(row.count, [&](int64_t start, int64_t length) {
        const auto a = loadOperand<Vector>(row.a, start, length);
        const auto b = loadOperand<Vector>(row.b, start, length);
        const auto c = loadOperand<Vector>(row.c, start, length);
        storePiece<Vector>(row.result + start, function(a, b, c), length);
    });
}

// Functions that are too rare in speech models to be worth a polynomial.
inline void mapEachByCall(const RowOperands& row, float (*function)(float))
{
    for (int64_t i = 0; i < row.count; ++i)
        row.result[i] = function(row.a.values[row.a.isUniform ? 0 : i]);
}

template <typename Vector> void unaryInstruction(const RowOperands& row)
{
    using Register = typename Vector::Register;
    const auto one = Vector::all(1.0f);
    switch (row.operation) {
    case RowOperation::negate:
        return mapOne<Vector>(row, [](Register a) { return -a; });
    case RowOperation::absolute:
        return mapOne<Vector>(row, Vector::absolute);
    case RowOperation::square:
        return mapOne<Vector>(row, [](Register a) { return a * a; });
    case RowOperation::squareRoot:
        return mapOne<Vector>(row, Vector::squareRoot);
    case RowOperation::reciprocalSquareRoot:
        return mapOne<Vector>(row, [&](Register a) { return one / Vector::squareRoot(a); });
    case RowOperation::reciprocal:
        return mapOne<Vector>(row, [&](Register a) { return one / a; });
    case RowOperation::relu:
        return mapOne<Vector>(row, [](Register a) { return Vector::maximum(Vector::zero(), a); });
    case RowOperation::exponential:
        return mapOne<Vector>(row, exponential<Vector>);
    case RowOperation::sigmoid:
        return mapOne<Vector>(row, sigmoid<Vector>);
    case RowOperation::silu:
        return mapOne<Vector>(row, [](Register a) { return a * sigmoid<Vector>(a); });
    case RowOperation::tangentHyperbolic:
        return mapOne<Vector>(row, tangentHyperbolic<Vector>);
    case RowOperation::logarithm:
        return mapEachByCall(row, ::logf);
    case RowOperation::errorFunction:
        return mapEachByCall(row, ::erff);
    default:
        return mapOne<Vector>(row, [](Register a) { return a; });
    }
}

template <typename Vector> void rowInstruction(const RowOperands& row)
{
    using Register = typename Vector::Register;
    switch (row.operation) {
    case RowOperation::add:
        return mapTwo<Vector>(row, [](Register a, Register b) { return a + b; });
    case RowOperation::subtract:
        return mapTwo<Vector>(row, [](Register a, Register b) { return a - b; });
    case RowOperation::multiply:
        return mapTwo<Vector>(row, [](Register a, Register b) { return a * b; });
    case RowOperation::divide:
        return mapTwo<Vector>(row, [](Register a, Register b) { return a / b; });
    case RowOperation::minimum:
        return mapTwo<Vector>(row, [](Register a, Register b) { return Vector::minimum(b, a); });
    case RowOperation::maximum:
        return mapTwo<Vector>(row, [](Register a, Register b) { return Vector::maximum(b, a); });
    case RowOperation::multiplyAdd:
        return mapThree<Vector>(row, Vector::multiplyAdd);
    case RowOperation::select:
        return mapThree<Vector>(row, [](Register a, Register b, Register c) { return Vector::whereZero(a, c, b); });
    default:
        return unaryInstruction<Vector>(row);
    }
}

template <typename Vector> void softmaxRow(float* row, int64_t count)
{
    const auto lowest = Vector::all(-HUGE_VALF);
    auto largest = lowest;
    forEachRegister<Vector>(count, [&](int64_t start, int64_t length) {
        largest = Vector::maximum(largest, Vector::loadOr(row + start, length, lowest));
    });
    const auto shift = Vector::all(Vector::largest(largest));
    auto sum = Vector::zero();
    forEachRegister<Vector>(count, [&](int64_t start, int64_t length) {
        const auto x = exponential<Vector>(Vector::loadOr(row + start, length, lowest) - shift);
        storePiece<Vector>(row + start, x, length);
        sum = sum + x;
    });
    const auto scale = Vector::all(1.0f / Vector::sum(sum));
    forEachRegister<Vector>(count, [&](int64_t start, int64_t length) {
        storePiece<Vector>(row + start, loadPiece<Vector>(row + start, length) * scale, length);
    });
}

template <typename Vector> void layerNormRow(const LayerNormRow& row)
{
    const auto count = static_cast<float>(row.count);
    auto sum = Vector::zero();
    forEachRegister<Vector>(
        row.count, [&](int64_t start, int64_t length) { sum = sum + loadPiece<Vector>(row.from + start, length); });
    const auto mean = Vector::all(Vector::sum(sum) / count);
    auto squares = Vector::zero();
    forEachRegister<Vector>(row.count, [&](int64_t start, int64_t length) {
        const auto difference = Vector::loadOr(row.from + start, length, mean) - mean;
        squares = Vector::multiplyAdd(difference, difference, squares);
    });
    const auto variance = Vector::all(Vector::sum(squares) / count + row.epsilon);
    const auto scale = Vector::all(1.0f) / Vector::squareRoot(variance);
    forEachRegister<Vector>(row.count, [&](int64_t start, int64_t length) {
        auto x = (loadPiece<Vector>(row.from + start, length) - mean) * scale;
        if (row.gamma != nullptr)
            x = x * loadPiece<Vector>(row.gamma + start, length);
        if (row.beta != nullptr)
            x = x + loadPiece<Vector>(row.beta + start, length);
        storePiece<Vector>(row.to + start, x, length);
    });
}

// A few registers of channels at a time: their sums do not wait for one another.
template <typename Vector, int registers> void depthwiseBlock(const DepthwisePosition& position, int64_t start)
{
    typename Vector::Register sums[registers];
#pragma GCC unroll 8
    for (int i = 0; i < registers; ++i)
        sums[i] = position.bias == nullptr ? Vector::zero() : Vector::load(position.bias + start + i * Vector::width);
    for (int64_t tap = 0; tap < position.tapCount; ++tap) {
        if (position.taps[tap] == nullptr)
            continue;
        const float* x = position.taps[tap] + start;
        const float* weight = position.weights + tap * position.channels + start;
#pragma GCC unroll 8
        for (int i = 0; i < registers; ++i)
            sums[i] = Vector::multiplyAdd(
                Vector::load(x + i * Vector::width), Vector::load(weight + i * Vector::width), sums[i]);
    }
#pragma GCC unroll 8
    for (int i = 0; i < registers; ++i)
        Vector::store(position.to + start + i * Vector::width, sums[i]);
}

template <typename Vector> void depthwiseEnd(const DepthwisePosition& position, int64_t start, int64_t length)
{
    auto sum = position.bias == nullptr ? Vector::zero() : Vector::load(position.bias + start, length);
    for (int64_t tap = 0; tap < position.tapCount; ++tap) {
        if (position.taps[tap] == nullptr)
            continue;
        const auto x = Vector::load(position.taps[tap] + start, length);
        const auto weight = Vector::load(position.weights + tap * position.channels + start, length);
        sum = Vector::multiplyAdd(x, weight, sum);
    }
    Vector::store(position.to + start, sum, length);
}

template <typename Vector> void depthwisePosition(const DepthwisePosition& position)
{
    constexpr int registers = 8;
    int64_t start = 0;
    for (; start + registers * Vector::width <= position.channels; start += registers * Vector::width)
        depthwiseBlock<Vector, registers>(position, start);
    for (; start + Vector::width <= position.channels; start += Vector::width)
        depthwiseBlock<Vector, 1>(position, start);
    if (start < position.channels)
        depthwiseEnd<Vector>(position, start, position.channels - start);
}

} // namespace MLProgram
