// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/ScalarType.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace MLProgram {

// Decoding of stored elements to the runtime's 32-bit forms. Each reads `to.size()` elements, beginning at
// element `first` of `packed`, which holds them all (see Constant for the packing).

// Any type but string; integers beyond 24 bits and 64-bit floats are rounded, booleans give 0 and 1.
void readReals(ScalarType type, std::span<const std::byte> packed, size_t first, std::span<float> to);

// Integer types and booleans; a value beyond 32 bits becomes the nearest that fits.
void readIntegers(ScalarType type, std::span<const std::byte> packed, size_t first, std::span<int32_t> to);

// Encodes elements 0.. of a floating-point type of 16 bits or more, rounding to the nearest, ties to even.
void writeReals(ScalarType type, std::span<const float> from, std::span<std::byte> to);

} // namespace MLProgram
