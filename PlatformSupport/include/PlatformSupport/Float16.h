// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <span>

namespace PlatformSupport {

// A 16-bit IEEE 754 float (1 sign, 5 exponent, 10 fraction bits) as it stands in a tensor or a file. It only
// stores: arithmetic is done in 32 bits.
struct Float16 {
    uint16_t bits = 0;

    bool operator==(const Float16&) const = default;
};

// Exact; subnormals, infinities and NaN are kept.
float toFloat(Float16 value) noexcept;

// Nearest, ties to even; above 65504 (after rounding) gives infinity. NaN stays NaN.
Float16 toFloat16(float value) noexcept;

// The same for whole rows, with the processor's conversion instructions where it has them. Both spans have
// the same length and do not overlap.
void toFloat(std::span<const Float16> from, std::span<float> to) noexcept;
void toFloat16(std::span<const float> from, std::span<Float16> to) noexcept;

} // namespace PlatformSupport
