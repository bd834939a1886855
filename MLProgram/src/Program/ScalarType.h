// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Tensor/Tensor.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace MLProgram {

// Element types of the program text.
enum class ScalarType : uint8_t {
    float16,
    float32,
    float64,
    bfloat16,
    float8E4M3, // 1-4-3 bits, bias 7, no infinities, 0x7F is NaN
    float8E5M2, // 1-5-2 bits, bias 15, otherwise as the larger IEEE types
    boolean,
    string,
    int4,
    int8,
    int16,
    int32,
    int64,
    uint1,
    uint2,
    uint3,
    uint4,
    uint6,
    uint8,
    uint16,
    uint32,
    uint64
};

// As it is spelled in the program text ("fp16"); nothing for any other word.
std::optional<ScalarType> scalarTypeNamed(std::string_view word) noexcept;
std::string_view nameOf(ScalarType type) noexcept;

bool isFloatingPoint(ScalarType type) noexcept;
bool isInteger(ScalarType type) noexcept; // of any width, signed or not; not boolean
bool isSigned(ScalarType type) noexcept; // floating-point types are

// Width of one element; a boolean takes 8 bits, a string 0.
unsigned bitsOf(ScalarType type) noexcept;

// How elements of the type are held while a program runs; a string counts as an integer and is never held.
ElementType elementTypeOf(ScalarType type) noexcept;

// Product of the dimensions; nothing when a dimension is negative or the product does not fit 63 bits.
std::optional<int64_t> checkedElementCount(std::span<const int64_t> shape) noexcept;

// Bytes of so many elements, elements below 8 bits packed without gaps; nothing when it does not fit 63 bits.
std::optional<int64_t> checkedByteCount(ScalarType type, int64_t elementCount) noexcept;

} // namespace MLProgram
