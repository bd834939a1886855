// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AudioCapture.h"

#include <DesktopServices/Microphone.h>
#include <Sorvane/AudioRecorder.h>

#include <utility>

namespace Sorvane {

namespace {

// A little above 40 ms at the usual rates: the meter moves as often as it is looked at.
constexpr size_t tapFrames = 2048;

} // namespace

AudioRecorder::AudioRecorder(DesktopServices::Microphone& microphone)
    : microphone_(microphone)
{
}

AudioRecorder::~AudioRecorder() = default;

void AudioRecorder::start()
{
    discard();
    auto engine = microphone_.makeEngine();
    const auto capture = std::make_shared<AudioCapture>(engine->inputFormat());
    engine->installTap(tapFrames,
        { .received = [capture](const DesktopServices::AudioBuffer& buffer) { capture->append(buffer); },
            .lost = [capture] { capture->fail(CaptureError::unavailable()); } });
    engine->start();
    engine_ = std::move(engine);
    capture_ = capture;
}

void AudioRecorder::pause()
{
    if (!engine_)
        return;
    capture_->pause();
    engine_->stop();
}

void AudioRecorder::resume()
{
    if (!engine_)
        throw CaptureError::unavailable();
    try {
        engine_->start();
    } catch (...) {
        engine_->stop();
        throw;
    }
    capture_->resume();
}

std::vector<float> AudioRecorder::snapshot() const
{
    return capture_ ? capture_->snapshot() : std::vector<float>();
}

std::vector<float> AudioRecorder::stop()
{
    pause();
    const auto capture = capture_;
    discard();
    return capture ? capture->snapshot() : std::vector<float>();
}

void AudioRecorder::discard()
{
    engine_.reset();
    capture_.reset();
}

double AudioRecorder::meter() const
{
    return capture_ ? capture_->meter() : 0;
}

size_t AudioRecorder::sampleCount() const
{
    return capture_ ? capture_->sampleCount() : 0;
}

} // namespace Sorvane
