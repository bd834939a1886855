// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/AutomaticModeDetection.h>
#include <Sorvane/DictationController.h>

#include <exception>

// The part of the controller that runs from the start of a recording to its pause.
namespace Sorvane {

using PlatformSupport::Awaitable;

namespace {

constexpr double longestDictation = 300.0; // seconds of captured audio
constexpr std::chrono::milliseconds meterStep { 40 };

} // namespace

void DictationController::start()
{
    if (onboardingVisible)
        return show();
    refreshPermissions();
    if (const auto blocker = readiness().blocker()) {
        set(status_, *blocker);
        return show();
    }
    try {
        capture();
        audio_.start();
    } catch (const std::exception& error) {
        audio_.discard();
        set(status_, error.what());
        return show();
    }
    begin();
}

// Remembers where the words are to go, and settles in what form.
void DictationController::capture()
{
    target_ = insertion_->captureForRecording();
    set(targetName_, target_->name);
    set(targetHarness_, target_->harness);
    automaticOutputMode_
        = AutomaticModeDetection::captureMode(target_, services_.desktop.accessibility, services_.clock);
    set(outputMode_, resolved(settings_.outputModeSelection, automaticOutputMode_));
}

void DictationController::begin()
{
    session_ = services_.uuids.next();
    set(transcript_, "");
    completion_.dismiss();
    set(savedToHistory_, false);
    set(elapsed_, 0);
    startedAt_ = services_.clock.date();
    set(status_, listening());
    enter(DictationPhase::recording);
    startMeter();
}

// Only without a field does it matter to the user now whether he will review the transcript.
std::string DictationController::listening() const
{
    if (target_ && target_->element)
        return "Listening…";
    if (settings_.previewBeforeInsert)
        return "Listening… Review your transcript when finished.";
    return "Listening… Your transcript will be copied when finished.";
}

void DictationController::startMeter()
{
    const auto work = [weak = self_.reference(), &clock = services_.clock] { return meter(weak, clock); };
    meterTask_ = PlatformSupport::startTask(services_.mainThread, work);
}

Awaitable<void> DictationController::meter(Weak weak, PlatformSupport::Clock& clock)
{
    while (!PlatformSupport::isCancelled()) {
        auto* const self = weak.get();
        if (!self || self->phase_ != DictationPhase::recording)
            co_return;
        self->measure();
        if (self->elapsed_ >= longestDictation)
            co_return self->finish();
        co_await clock.sleep(meterStep);
    }
}

void DictationController::measure()
{
    set(level_, audio_.meter());
    set(elapsed_, static_cast<double>(audio_.sampleCount()) / AudioRecorder::sampleRate);
}

void DictationController::pause()
{
    if (phase_ != DictationPhase::recording)
        return;
    audio_.pause();
    if (meterTask_)
        meterTask_->cancel();
    measure();
    set(level_, 0);
    set(status_, "Microphone off");
    enter(DictationPhase::paused);
}

void DictationController::resume()
{
    if (phase_ != DictationPhase::paused)
        return;
    try {
        audio_.resume();
    } catch (const std::exception& error) {
        return set(status_, std::string("Could not resume: ") + error.what());
    }
    set(status_, listening());
    enter(DictationPhase::recording);
    startMeter();
}

void DictationController::togglePause()
{
    if (phase_ == DictationPhase::recording)
        pause();
    else
        resume();
}

} // namespace Sorvane
