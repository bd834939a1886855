// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Interleaver.h"

#include <AudioIO/AudioIOError.h>

namespace AudioIO::FFmpeg {

namespace {

// Wider than any real recording; what lies outside is a damaged or a hostile header.
constexpr int minimumRate = 1'000;
constexpr int maximumRate = 768'000;
constexpr int maximumChannels = 64;

void check(int sampleRate, int channels)
{
    if (sampleRate < minimumRate || sampleRate > maximumRate)
        throw AudioIOError::decodeFailed("A sample rate of " + std::to_string(sampleRate) + " Hz is not supported");
    if (channels < 1 || channels > maximumChannels)
        throw AudioIOError::decodeFailed(std::to_string(channels) + " channels are not supported");
}

} // namespace

// The layout is the usual one for the number of channels: only the number is told to anybody.
Interleaver::Interleaver(int sampleRate, int channels)
    : rate_(sampleRate)
{
    check(sampleRate, channels);
    av_channel_layout_default(&layout_, channels);
}

Interleaver::~Interleaver()
{
    av_channel_layout_uninit(&layout_);
}

void Interleaver::append(const AVFrame& frame, std::vector<float>& interleaved)
{
    prepare(frame, interleaved);
    convert(const_cast<const uint8_t**>(frame.extended_data), frame.nb_samples, interleaved);
}

void Interleaver::finish(std::vector<float>& interleaved)
{
    if (converter_)
        convert(nullptr, 0, interleaved);
}

void Interleaver::prepare(const AVFrame& frame, std::vector<float>& interleaved)
{
    const Source source { frame.sample_rate, frame.format, frame.ch_layout.nb_channels };
    if (converter_ && source == source_)
        return;

    check(source.rate, source.channels);
    finish(interleaved);
    AVChannelLayout from {};
    av_channel_layout_default(&from, source.channels);
    SwrContext* context = nullptr;
    swr_alloc_set_opts2(&context, &layout_, AV_SAMPLE_FMT_FLT, rate_, &from, static_cast<AVSampleFormat>(source.format),
        source.rate, 0, nullptr);
    converter_.reset(context);
    if (!converter_ || swr_init(converter_.get()) < 0)
        throw AudioIOError::decodeFailed("Cannot join " + std::to_string(source.channels) + " channels to "
            + std::to_string(channels()) + " in one recording");
    source_ = source;
}

void Interleaver::convert(const uint8_t** planes, int frames, std::vector<float>& interleaved)
{
    const int capacity = swr_get_out_samples(converter_.get(), frames);
    if (capacity <= 0)
        return;
    const auto frameSize = static_cast<size_t>(channels());
    const size_t before = interleaved.size();
    interleaved.resize(before + static_cast<size_t>(capacity) * frameSize);
    auto* out = reinterpret_cast<uint8_t*>(interleaved.data() + before);
    const int converted = swr_convert(converter_.get(), &out, capacity, planes, frames);
    if (converted < 0)
        throw AudioIOError::decodeFailed(errorText(converted));
    interleaved.resize(before + static_cast<size_t>(converted) * frameSize);
}

} // namespace AudioIO::FFmpeg
