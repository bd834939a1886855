// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <span>
#include <vector>

// Sines, and how much of one is in some audio.
namespace AudioIO {

constexpr double toneFrequency = 440; // Hz
constexpr double toneLevel = 0.5;

// A sine that begins at 0; `channels` times the same.
inline std::vector<float> tone(int sampleRate, int channels, size_t frames, double frequency = toneFrequency)
{
    std::vector<float> samples;
    samples.reserve(frames * static_cast<size_t>(channels));
    for (size_t i = 0; i < frames; ++i) {
        const double phase = 2 * std::numbers::pi * frequency * static_cast<double>(i) / sampleRate;
        samples.insert(samples.end(), static_cast<size_t>(channels), static_cast<float>(toneLevel * std::sin(phase)));
    }
    return samples;
}

inline std::vector<float> channel(std::span<const float> interleaved, int channels, int which)
{
    std::vector<float> samples;
    for (auto i = static_cast<size_t>(which); i < interleaved.size(); i += static_cast<size_t>(channels))
        samples.push_back(interleaved[i]);
    return samples;
}

inline std::span<const float> middleHalf(std::span<const float> samples)
{
    return samples.subspan(samples.size() / 4, samples.size() / 2);
}

// How loud a frequency is: the level of a sine that has it.
inline double levelAt(double frequency, int sampleRate, std::span<const float> samples)
{
    std::complex<double> sum = 0;
    double weights = 0;
    for (size_t i = 0; i < samples.size(); ++i) {
        // A window, so that a sine which does not fit the span evenly stays at its own frequency.
        const double weight
            = 1 - std::cos(2 * std::numbers::pi * (static_cast<double>(i) + 0.5) / static_cast<double>(samples.size()));
        const double phase = 2 * std::numbers::pi * frequency * static_cast<double>(i) / sampleRate;
        sum += weight * static_cast<double>(samples[i]) * std::polar(1.0, -phase);
        weights += weight;
    }
    return 2 * std::abs(sum) / weights;
}

inline double level(std::span<const float> samples)
{
    double power = 0;
    for (const float sample : samples)
        power += static_cast<double>(sample) * sample;
    return std::sqrt(2 * power / static_cast<double>(std::max<size_t>(samples.size(), 1)));
}

} // namespace AudioIO
