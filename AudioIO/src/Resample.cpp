// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <AudioIO/Resample.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <cmath>

namespace AudioIO::Resample {

namespace {

std::vector<float> copy(std::span<const float> samples)
{
    return { samples.begin(), samples.end() };
}

// to / from x count, halves away from zero.
size_t resampledCount(size_t count, double fromRate, double toRate)
{
    const double exact = std::round(toRate / fromRate * static_cast<double>(count));
    PlatformSupport::precondition(exact < 0x1p62, "length of resampled audio overflows");
    return static_cast<size_t>(exact);
}

} // namespace

std::vector<float> mixdownMono(std::span<const float> interleaved, int channels)
{
    if (channels < 2)
        return copy(interleaved);

    const auto frameSize = static_cast<size_t>(channels);
    const float scale = 1.0F / static_cast<float>(channels);
    std::vector<float> mono(interleaved.size() / frameSize);
    for (size_t frame = 0; frame < mono.size(); ++frame) {
        float sum = 0;
        for (const float sample : interleaved.subspan(frame * frameSize, frameSize))
            sum += sample;
        mono[frame] = sum * scale;
    }
    return mono;
}

std::vector<float> linear(std::span<const float> samples, double fromRate, double toRate)
{
    const bool bothAboveZero = fromRate > 0 && toRate > 0;
    if (!bothAboveZero || fromRate == toRate || samples.size() < 2)
        return copy(samples);

    const double step = fromRate / toRate;
    std::vector<float> resampled(resampledCount(samples.size(), fromRate, toRate));
    for (size_t i = 0; i < resampled.size(); ++i) {
        const double position = step * static_cast<double>(i);
        const auto before = static_cast<size_t>(position);
        if (before < samples.size() - 1) {
            const auto fraction = static_cast<float>(position - static_cast<double>(before));
            resampled[i] = (1 - fraction) * samples[before] + samples[before + 1] * fraction;
        } else {
            resampled[i] = samples.back();
        }
    }
    return resampled;
}

std::vector<std::vector<float>> deinterleave(std::span<const float> interleaved, int channels)
{
    if (channels < 2)
        return { copy(interleaved) };

    const auto frameSize = static_cast<size_t>(channels);
    std::vector<std::vector<float>> planes(frameSize, std::vector<float>(interleaved.size() / frameSize));
    for (size_t channel = 0; channel < frameSize; ++channel) {
        for (size_t frame = 0; frame < planes[channel].size(); ++frame)
            planes[channel][frame] = interleaved[frame * frameSize + channel];
    }
    return planes;
}

std::vector<float> interleave(std::span<const std::vector<float>> channels)
{
    if (channels.empty())
        return {};

    size_t frames = channels.front().size();
    for (const auto& channel : channels)
        frames = std::min(frames, channel.size());

    std::vector<float> interleaved;
    interleaved.reserve(frames * channels.size());
    for (size_t frame = 0; frame < frames; ++frame) {
        for (const auto& channel : channels)
            interleaved.push_back(channel[frame]);
    }
    return interleaved;
}

std::vector<float> toMono(const PCM& pcm, double sampleRate)
{
    return linear(mixdownMono(pcm.samples, pcm.channels), pcm.sampleRate, sampleRate);
}

std::vector<std::vector<float>> toChannels(const PCM& pcm, double sampleRate)
{
    auto planes = deinterleave(pcm.samples, pcm.channels);
    for (auto& plane : planes)
        plane = linear(plane, pcm.sampleRate, sampleRate);
    return planes;
}

} // namespace AudioIO::Resample
