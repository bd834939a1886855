// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Meter.h"

#include <algorithm>
#include <cmath>

namespace Sorvane {

namespace {

constexpr double rangeInDecibels = 55;

// -60 dB: below the range, and a number that has a logarithm.
constexpr float leastPower = 0.000001F;

float meanSquare(std::span<const float> samples)
{
    float sum = 0;
    for (const float sample : samples)
        sum += sample * sample;
    return samples.empty() ? 0 : sum / static_cast<float>(samples.size());
}

} // namespace

double meterLevel(std::span<const float> samples)
{
    const double power = std::max(leastPower, meanSquare(samples)); // in this order, NaN counts as silence
    const double decibels = 10 * std::log10(power);
    return std::clamp((decibels + rangeInDecibels) / rangeInDecibels, 0.0, 1.0);
}

} // namespace Sorvane
