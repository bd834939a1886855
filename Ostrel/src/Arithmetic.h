// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <limits>

// Integer arithmetic on numbers that come from a model's files, where nothing promises that they are sane.
namespace Ostrel {

// The sum, held at the nearest 64-bit integer when it does not fit.
constexpr int64_t saturatingSum(int64_t a, int64_t b) noexcept
{
    int64_t sum = 0;
    if (!__builtin_add_overflow(a, b, &sum))
        return sum;
    return b > 0 ? std::numeric_limits<int64_t>::max() : std::numeric_limits<int64_t>::min();
}

// The product of two numbers that are not negative, held at the highest 64-bit integer when it does not fit.
constexpr int64_t saturatingProduct(int64_t a, int64_t b) noexcept
{
    int64_t product = 0;
    return __builtin_mul_overflow(a, b, &product) ? std::numeric_limits<int64_t>::max() : product;
}

// The integer part; what does not fit is held at the nearest 64-bit integer, and NaN gives 0.
constexpr int64_t truncated(double value) noexcept
{
    if (value != value)
        return 0;
    if (value >= 0x1p63)
        return std::numeric_limits<int64_t>::max();
    if (value < -0x1p63)
        return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(value);
}

} // namespace Ostrel
