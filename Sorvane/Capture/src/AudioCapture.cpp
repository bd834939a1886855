// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AudioCapture.h"

#include "Meter.h"

#include <AudioIO/AudioIOError.h>
#include <Sorvane/AudioRecorder.h>

#include <algorithm>

namespace Sorvane {

namespace {

using AudioIO::AudioConverter;
using AudioIO::AudioIOError;
using DesktopServices::AudioBuffer;
using DesktopServices::AudioFormat;

// More samples than the rates promise come when the converter lets go of some that it held back.
constexpr size_t spareSamples = 32;

AudioConverter makeConverter(AudioFormat from)
{
    try {
        return { { .sampleRate = from.sampleRate, .channels = from.channels }, AudioRecorder::sampleRate,
            AudioConverter::Mix::mean };
    } catch (const AudioIOError&) {
        throw CaptureError::unavailable();
    }
}

} // namespace

AudioCapture::AudioCapture(AudioFormat inputFormat)
    : inputFormat_(inputFormat)
    , converter_(makeConverter(inputFormat))
{
    samples_.reserve(AudioRecorder::capacity);
}

void AudioCapture::append(const AudioBuffer& buffer)
{
    const std::lock_guard hold(lock_);
    if (paused_)
        return;
    if (buffer.format != inputFormat_) {
        failure_ = CaptureError::conversion("The format of the microphone changed");
        return;
    }
    converted_.reserve(outputCapacity(buffer.frames(), inputFormat_.sampleRate));
    if (!convert([&] { converter_.convert(buffer.interleaved, converted_); }))
        return;
    keep(converted_);
    meter_ = meterLevel(converted_);
}

void AudioCapture::fail(const CaptureError& failure)
{
    const std::lock_guard hold(lock_);
    failure_ = failure;
    meter_ = 0;
}

void AudioCapture::pause()
{
    const std::lock_guard hold(lock_);
    if (paused_)
        return;
    paused_ = true;
    meter_ = 0;
    if (convert([&] { converter_.drain(converted_); }))
        keep(converted_);
}

void AudioCapture::resume()
{
    const std::lock_guard hold(lock_);
    if (!paused_)
        return;
    convert([&] { converter_.reset(); });
    paused_ = false;
}

std::vector<float> AudioCapture::snapshot() const
{
    const std::lock_guard hold(lock_);
    if (failure_)
        throw CaptureError(*failure_);
    return samples_;
}

size_t AudioCapture::sampleCount() const
{
    const std::lock_guard hold(lock_);
    return samples_.size();
}

double AudioCapture::meter() const
{
    const std::lock_guard hold(lock_);
    return meter_;
}

size_t AudioCapture::outputCapacity(size_t frames, int inputSampleRate)
{
    const auto from = static_cast<size_t>(inputSampleRate);
    return (frames * AudioRecorder::sampleRate + from - 1) / from + spareSamples;
}

// Runs a step of the converter, which appends to converted_; false if it failed.
template <typename Step> bool AudioCapture::convert(Step step)
{
    converted_.clear();
    try {
        step();
        return true;
    } catch (const AudioIOError& error) {
        failure_ = CaptureError::conversion(error.description());
        return false;
    }
}

void AudioCapture::keep(std::span<const float> converted)
{
    const auto fitting = converted.first(std::min(converted.size(), AudioRecorder::capacity - samples_.size()));
    samples_.insert(samples_.end(), fitting.begin(), fitting.end());
}

} // namespace Sorvane
