// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <span>

namespace Ostrel {

// Sum of the squares of every `stride`-th sample, from the first on, in 32 bits from left to right.
constexpr float sumOfSquares(std::span<const float> samples, size_t stride = 1) noexcept
{
    float sum = 0;
    for (size_t i = 0; i < samples.size(); i += stride)
        sum += samples[i] * samples[i];
    return sum;
}

// Mean of the squares of every `stride`-th sample; 0 for no samples.
constexpr float meanSquare(std::span<const float> samples, size_t stride = 1) noexcept
{
    if (samples.empty())
        return 0;
    const size_t count = (samples.size() + stride - 1) / stride;
    return sumOfSquares(samples, stride) / static_cast<float>(count);
}

} // namespace Ostrel
