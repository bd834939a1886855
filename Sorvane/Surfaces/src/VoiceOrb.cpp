// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/VoiceOrb.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace Sorvane {

namespace {

constexpr double frequency = 24.0; // natural frequency of the spring, per second
constexpr std::chrono::seconds settled { 3 }; // after which nothing of the motion is left

constexpr double meterRange = 55; // dB that the meter shows
constexpr double stillest = -48; // dB
constexpr double loudest = -12; // dB

double clampedToUnit(double value)
{
    return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0;
}

} // namespace

double orbEnergy(double level, bool isRecording, Motion motion)
{
    if (!isRecording || motion == Motion::reduced || !std::isfinite(level))
        return 0;
    const double decibels = std::clamp(level, 0.0, 1.0) * meterRange - meterRange;
    return clampedToUnit((decibels - stillest) / (loudest - stillest));
}

OrbResponse::State OrbResponse::state(Instant now) const
{
    if (started_ == Instant::min() || now - started_ >= settled)
        return { .value = target_, .velocity = 0 };
    const double time = std::max(0.0, std::chrono::duration<double>(now - started_).count());
    const double offset = initial_.value - target_;
    const double drift = initial_.velocity + offset * frequency;
    const double decay = std::exp(-frequency * time);
    return {
        .value = target_ + decay * (offset + time * drift),
        .velocity = decay * (initial_.velocity - time * frequency * drift),
    };
}

void OrbResponse::retarget(double energy, Instant now)
{
    initial_ = state(now);
    target_ = clampedToUnit(energy);
    started_ = now;
}

} // namespace Sorvane
