// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <AudioIO/AudioConverter.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>
#include <vector>

// Something to record, and what a recording of it should be.
namespace Sorvane {

// A gliding tone, different at every moment, so that a gap or a repetition shows. All channels have the same.
inline std::vector<float> glide(int sampleRate, int channels, size_t frames)
{
    std::vector<float> samples;
    samples.reserve(frames * static_cast<size_t>(channels));
    for (size_t i = 0; i < frames; ++i) {
        const double seconds = static_cast<double>(i) / sampleRate;
        const double phase = 2 * std::numbers::pi * (200 + 150 * seconds) * seconds;
        samples.insert(samples.end(), static_cast<size_t>(channels), static_cast<float>(0.5 * std::sin(phase)));
    }
    return samples;
}

// The same converted to 16 kHz mono in one go.
inline std::vector<float> convertedAtOnce(std::span<const float> interleaved, int sampleRate, int channels)
{
    AudioIO::AudioConverter converter({ sampleRate, channels }, 16'000, AudioIO::AudioConverter::Mix::mean);
    std::vector<float> mono;
    converter.convert(interleaved, mono);
    converter.drain(mono);
    return mono;
}

// The largest difference of samples at the same place; the lengths are not compared.
inline double worstDifference(std::span<const float> a, std::span<const float> b)
{
    double worst = 0;
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        worst = std::max(worst, std::abs(static_cast<double>(a[i]) - b[i]));
    return worst;
}

} // namespace Sorvane
