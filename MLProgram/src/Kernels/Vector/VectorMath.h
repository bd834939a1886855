// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

// Exponential and its relatives on a register of floats.
//
// Everything in this folder is a template over a Vector, the wrapper of one instruction set. Each set's file defines
// its Vector in an unnamed namespace, so that no code compiled for one processor is shared with another; for the same
// reason nothing here calls an inline function of the standard library.

namespace MLProgram {

// e^x: x = n · ln 2 + r with |r| <= ln 2 / 2, a polynomial for e^r, then times 2^n. Below 2 units in the last place;
// 0 and infinity outside the range, NaN stays.
template <typename Vector> typename Vector::Register exponential(typename Vector::Register x)
{
    constexpr float underflow = -104.0f; // e^-104 is below half of the smallest float
    constexpr float overflow = 89.0f; // e^89 is above the largest
    constexpr float logarithmOfTwoHigh = 0.693359375f; // few digits, so that n times it is exact
    constexpr float logarithmOfTwoLow = -2.12194440e-4f;
    const auto multiplyAdd = Vector::multiplyAdd;
    const auto all = Vector::all;

    x = Vector::minimum(all(overflow), Vector::maximum(all(underflow), x));
    const auto n = Vector::nearest(x * all(1.44269504f));
    auto r = multiplyAdd(n, all(-logarithmOfTwoHigh), x);
    r = multiplyAdd(n, all(-logarithmOfTwoLow), r);
    auto p = all(1.9875691500e-4f);
    p = multiplyAdd(p, r, all(1.3981999507e-3f));
    p = multiplyAdd(p, r, all(8.3334519073e-3f));
    p = multiplyAdd(p, r, all(4.1665795894e-2f));
    p = multiplyAdd(p, r, all(1.6666665459e-1f));
    p = multiplyAdd(p, r, all(5.0000001201e-1f));
    p = multiplyAdd(p, r * r, r) + all(1.0f);
    return Vector::timesPowerOfTwo(p, n);
}

template <typename Vector> typename Vector::Register sigmoid(typename Vector::Register x)
{
    const auto one = Vector::all(1.0f);
    return one / (one + exponential<Vector>(Vector::zero() - x));
}

// Near zero an odd polynomial, elsewhere 1 - 2 / (e^2|x| + 1) with the sign of x.
template <typename Vector> typename Vector::Register tangentHyperbolic(typename Vector::Register x)
{
    constexpr float polynomialBelow = 0.625f;
    const auto multiplyAdd = Vector::multiplyAdd;
    const auto all = Vector::all;

    const auto square = x * x;
    auto p = all(-5.70498872745e-3f);
    p = multiplyAdd(p, square, all(2.06390887954e-2f));
    p = multiplyAdd(p, square, all(-5.37397155531e-2f));
    p = multiplyAdd(p, square, all(1.33314422036e-1f));
    p = multiplyAdd(p, square, all(-3.33332819422e-1f));
    const auto nearZero = multiplyAdd(p * square, x, x);

    const auto magnitude = Vector::absolute(x);
    const auto grown = exponential<Vector>(magnitude + magnitude);
    const auto far = Vector::withSign(all(1.0f) - all(2.0f) / (grown + all(1.0f)), x);
    return Vector::whereLess(magnitude, all(polynomialBelow), nearZero, far);
}

} // namespace MLProgram
