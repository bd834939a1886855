// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Tensor/Tensor.h"

#include <cstdint>
#include <limits>

namespace MLProgram {

// Toward zero; what is out of range becomes the nearest value in it, and NaN becomes 0.
template <typename Integer> Integer saturated(double value) noexcept
{
    constexpr double lowest = std::numeric_limits<Integer>::min();
    constexpr double highest = std::numeric_limits<Integer>::max();
    if (value != value)
        return 0;
    return static_cast<Integer>(value < lowest ? lowest : value > highest ? highest : value);
}

// 32-bit integers of a program wrap around.
inline int32_t wrapped(int64_t value) noexcept
{
    return static_cast<int32_t>(static_cast<uint32_t>(value));
}

// sum + x * y
inline float multiplyAdd(float sum, float x, float y) noexcept
{
    return sum + x * y;
}
inline int32_t multiplyAdd(int32_t sum, int32_t x, int32_t y) noexcept
{
    return wrapped(sum + int64_t { x } * y);
}

// Calls body with a value of the C++ type that holds such elements.
template <typename Body> decltype(auto) withElementType(ElementType element, Body&& body)
{
    switch (element) {
    case ElementType::real:
        return body(float {});
    case ElementType::integer:
        return body(int32_t {});
    case ElementType::boolean:
        break;
    }
    return body(uint8_t {});
}

// The same where only numbers occur.
template <typename Body> decltype(auto) withNumberType(ElementType element, Body&& body)
{
    return element == ElementType::integer ? body(int32_t {}) : body(float {});
}

} // namespace MLProgram
