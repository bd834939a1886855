// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FFmpeg/FFmpeg.h"

#include <AudioIO/AudioConverter.h>
#include <AudioIO/AudioIOError.h>
#include <AudioIO/Resample.h>
#include <PlatformSupport/Precondition.h>

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <string>

namespace AudioIO {

namespace {

// Up to here a number of channels stands for known speaker places.
constexpr int mostPlacedChannels = 8;

// Taps of the low-pass filter at equal rates; going down by a factor it gets longer by that factor. Twice the
// library's usual length: the audio is short against what is done with it afterwards.
constexpr int filterTaps = 64;

// Keeps the buffers of one call small, whatever the caller hands over.
constexpr size_t framesPerBlock = 65536;

FFmpeg::Owned<SwrContext> makeConverter(AudioConverter::Format from, int toSampleRate)
{
    AVChannelLayout speakers {};
    AVChannelLayout mono {};
    av_channel_layout_default(&speakers, from.channels);
    av_channel_layout_default(&mono, 1);
    SwrContext* context = nullptr;
    swr_alloc_set_opts2(
        &context, &mono, AV_SAMPLE_FMT_FLT, toSampleRate, &speakers, AV_SAMPLE_FMT_FLT, from.sampleRate, 0, nullptr);
    FFmpeg::Owned<SwrContext> converter(context);
    if (converter) {
        av_opt_set_double(context, "rematrix_maxval", 1, 0); // the weights of the mix add up to at most 1
        av_opt_set_int(context, "filter_size", filterTaps, 0);
        av_opt_set_int(context, "linear_interp", 1, 0); // exact for rates without a small common ratio too
        if (swr_init(context) < 0)
            converter.reset();
    }
    return converter;
}

} // namespace

class AudioConverter::Implementation {
public:
    Implementation(Format from, int toSampleRate, Mix mix);

    void convert(std::span<const float> interleaved, std::vector<float>& mono);
    void drain(std::vector<float>& mono);
    void reset();

private:
    void resample(const float* interleaved, size_t frames, std::vector<float>& mono);

    Format from_;
    bool isMixedByMean_;
    bool drained_ = false;
    FFmpeg::Owned<SwrContext> converter_; // none if nothing is left to do
};

AudioConverter::Implementation::Implementation(Format from, int toSampleRate, Mix mix)
    : from_(from)
    , isMixedByMean_(mix == Mix::mean || from.channels > mostPlacedChannels)
{
    FFmpeg::silenceLog();
    const bool isSensible = from.sampleRate > 0 && from.channels > 0 && toSampleRate > 0;
    const int placedChannels = isMixedByMean_ ? 1 : from.channels;
    if (isSensible && placedChannels == 1 && from.sampleRate == toSampleRate)
        return;
    if (isSensible)
        converter_ = makeConverter({ from.sampleRate, placedChannels }, toSampleRate);
    if (!converter_)
        throw AudioIOError::decodeFailed("Cannot convert " + std::to_string(from.channels) + " channels at "
            + std::to_string(from.sampleRate) + " Hz to one at " + std::to_string(toSampleRate) + " Hz");
}

void AudioConverter::Implementation::convert(std::span<const float> interleaved, std::vector<float>& mono)
{
    const auto frameSize = static_cast<size_t>(from_.channels);
    PlatformSupport::precondition(!drained_, "audio converter used after its end");
    PlatformSupport::precondition(interleaved.size() % frameSize == 0, "audio converter given a part of a frame");

    while (!interleaved.empty()) {
        const auto block = interleaved.first(std::min(interleaved.size(), framesPerBlock * frameSize));
        const size_t frames = block.size() / frameSize;
        if (isMixedByMean_)
            resample(Resample::mixdownMono(block, from_.channels).data(), frames, mono);
        else
            resample(block.data(), frames, mono);
        interleaved = interleaved.subspan(block.size());
    }
}

void AudioConverter::Implementation::drain(std::vector<float>& mono)
{
    PlatformSupport::precondition(!drained_, "audio converter used after its end");
    drained_ = true;
    if (converter_)
        resample(nullptr, 0, mono);
}

// Initialised again, the library keeps the filter it has worked out and forgets all audio.
void AudioConverter::Implementation::reset()
{
    drained_ = false;
    const int result = converter_ ? swr_init(converter_.get()) : 0;
    if (result < 0)
        throw AudioIOError::decodeFailed(FFmpeg::errorText(result));
}

// No samples at all mean the end to the converter.
void AudioConverter::Implementation::resample(const float* interleaved, size_t frames, std::vector<float>& mono)
{
    if (!converter_) {
        mono.insert(mono.end(), interleaved, interleaved + frames);
        return;
    }
    const auto* in = reinterpret_cast<const uint8_t*>(interleaved);
    const int capacity = std::max(swr_get_out_samples(converter_.get(), static_cast<int>(frames)), 0);
    const size_t before = mono.size();
    mono.resize(before + static_cast<size_t>(capacity));
    auto* out = reinterpret_cast<uint8_t*>(mono.data() + before);
    const int converted = swr_convert(converter_.get(), &out, capacity, in ? &in : nullptr, static_cast<int>(frames));
    if (converted < 0)
        throw AudioIOError::decodeFailed(FFmpeg::errorText(converted));
    mono.resize(before + static_cast<size_t>(converted));
}

AudioConverter::AudioConverter(Format from, int toSampleRate, Mix mix)
    : implementation_(std::make_unique<Implementation>(from, toSampleRate, mix))
{
}

AudioConverter::AudioConverter(AudioConverter&&) noexcept = default;
AudioConverter& AudioConverter::operator=(AudioConverter&&) noexcept = default;
AudioConverter::~AudioConverter() = default;

void AudioConverter::convert(std::span<const float> interleaved, std::vector<float>& mono)
{
    implementation_->convert(interleaved, mono);
}

void AudioConverter::drain(std::vector<float>& mono)
{
    implementation_->drain(mono);
}

void AudioConverter::reset()
{
    implementation_->reset();
}

} // namespace AudioIO
