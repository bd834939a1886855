// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <AudioIO/PCM.h>

#include <span>
#include <vector>

// Changes of rate and channels for whole buffers in memory. Nothing here fails.
namespace AudioIO::Resample {

// The mean of each frame's samples. Fewer than 2 channels: the samples as they are; a partial last frame
// is dropped.
std::vector<float> mixdownMono(std::span<const float> interleaved, int channels);

// Straight lines between neighbouring samples of one channel; beyond the last one its value is held. There
// is no low-pass filter, so going down in rate aliases. The samples come back unchanged when there are
// fewer than 2, when the rates are equal, or when one is not above 0.
//
// Example: [0, 1] from 1 to 2 Hz gives [0, 0.5, 1, 1].
std::vector<float> linear(std::span<const float> samples, double fromRate, double toRate);

// One array for each channel, all equally long; a partial last frame is dropped.
std::vector<std::vector<float>> deinterleave(std::span<const float> interleaved, int channels);

// The reverse; channels longer than the shortest are cut to it.
std::vector<float> interleave(std::span<const std::vector<float>> channels);

// mixdownMono(), then linear() to the rate.
std::vector<float> toMono(const PCM& pcm, double sampleRate);

// deinterleave(), then linear() on each channel.
std::vector<std::vector<float>> toChannels(const PCM& pcm, double sampleRate);

} // namespace AudioIO::Resample
