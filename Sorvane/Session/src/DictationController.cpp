// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Finishing.h"

#include <PlatformSupport/TaskContext.h>
#include <Sorvane/DictationController.h>
#include <Sorvane/DictationRules.h>

#include <utility>

namespace Sorvane {

using PlatformSupport::Awaitable;

namespace {

// How long an application that is brought to the front may take to get there.
constexpr std::chrono::milliseconds activationTime { 250 };

void cancel(const std::optional<PlatformSupport::Task<>>& task)
{
    if (task)
        task->cancel();
}

} // namespace

DictationController::DictationController(DictationServices services)
    : services_(std::move(services))
    , settings_(Settings::read(services_.defaults))
    , outputMode_(resolved(settings_.outputModeSelection, TranscriptMode::clean))
    , history_(services_.historyDirectory, services_.uuids)
    , preparation_(services_.mainThread, services_.uuids)
    , completion_(services_.mainThread, services_.clock)
    , audio_(services_.microphone)
    , insertion_(std::make_shared<TextInsertion>(services_.desktop, services_.clock))
    , shortcut_(services_.desktop.hotKey)
    , session_(services_.uuids.next())
    , startedAt_(services_.clock.date())
{
    preparation_.onChange = [this] { mirrorPreparation(); };
    completion_.onChange = [this] {
        observers_.notify();
        if (phaseChanged)
            phaseChanged();
    };
    refreshPermissions();
    watchApplications();
    shortcut_.onEvent = [weak = self_.reference()](bool pressed) {
        if (auto* const self = weak.get())
            self->handleShortcut(pressed);
    };
    registerShortcut();
}

DictationController::~DictationController()
{
    shutdown();
}

// The destination of a dictation that is started in this application's own window is the application before it.
void DictationController::watchApplications()
{
    lastExternalApp_ = services_.desktop.workspace.frontmostApplication();
    if (lastExternalApp_)
        insertion_->prepareAccessibility(*lastExternalApp_);
    activations_ = services_.desktop.workspace.observeActivation([this](const auto& application) {
        if (application->processIdentifier() == services_.desktop.workspace.ownProcessIdentifier())
            return;
        lastExternalApp_ = application;
        insertion_->prepareAccessibility(*application);
    });
}

void DictationController::handleShortcut(bool pressed)
{
    if (pressed && holdPressed_)
        return;
    holdPressed_ = pressed;
    if (pendingStartTask_)
        return;
    if (onboardingVisible) {
        if (pressed)
            startFromApp(StartCondition::heldShortcut);
        return;
    }
    if (DictationRules::shouldStop(phase_, settings_.mode, pressed))
        return finish();
    if (!pressed)
        return;
    if (phase_ == DictationPhase::paused)
        return resume();
    if (phase_ == DictationPhase::idle)
        start();
}

void DictationController::toggleFromButton()
{
    if (phase_ == DictationPhase::recording || phase_ == DictationPhase::paused)
        finish();
    else if (phase_ == DictationPhase::idle)
        startFromApp(StartCondition::none);
}

void DictationController::startFromApp(StartCondition condition)
{
    if (pendingStartTask_)
        return;
    refreshPermissions();
    if (readiness().blocker())
        return show();
    if (onboardingVisible && dismissOnboarding)
        dismissOnboarding();
    const auto work = [weak = self_.reference(), condition] { return pendingStart(weak, condition); };
    pendingStartTask_ = PlatformSupport::startTask(services_.mainThread, work);
}

Awaitable<void> DictationController::pendingStart(Weak weak, StartCondition condition)
{
    try {
        if (auto* const self = weak.get())
            co_await self->leaveOwnWindow();
    } catch (const PlatformSupport::CancellationError&) {
    }
    auto* const self = weak.get();
    if (!self)
        co_return;
    if (!PlatformSupport::isCancelled() && self->isWanted(condition))
        self->start();
    self->pendingStartTask_.reset();
}

// Nothing of the controller is touched after the wait: it may be gone by then.
Awaitable<void> DictationController::leaveOwnWindow() const
{
    const auto& workspace = services_.desktop.workspace;
    const auto frontmost = workspace.frontmostApplication();
    if (!frontmost || frontmost->processIdentifier() != workspace.ownProcessIdentifier())
        co_return;
    if (lastExternalApp_)
        lastExternalApp_->activate();
    co_await services_.clock.sleep(activationTime);
}

// A key that was tapped while its start was pending, and should have been held, starts nothing.
bool DictationController::isWanted(StartCondition condition) const
{
    return condition == StartCondition::none || settings_.mode != ActivationMode::hold || holdPressed_;
}

void DictationController::finish()
{
    const bool isRecording = phase_ == DictationPhase::recording || phase_ == DictationPhase::paused;
    if (isRecording && model_)
        Finishing::begin(*this);
}

void DictationController::cancel()
{
    if (phase_ == DictationPhase::idle || phase_ == DictationPhase::preparing)
        return;
    stopWork();
    complete("Dictation canceled.");
}

void DictationController::shutdown()
{
    Sorvane::cancel(pendingStartTask_);
    Sorvane::cancel(preparation_.task());
    stopWork();
}

// From here on nothing of the dictation so far has any effect.
void DictationController::stopWork()
{
    session_ = services_.uuids.next();
    Sorvane::cancel(finishTask_);
    Sorvane::cancel(meterTask_);
    audio_.discard();
}

void DictationController::complete(const std::string& message)
{
    set(status_, message);
    set(level_, 0);
    enter(DictationPhase::idle);
}

void DictationController::enter(DictationPhase phase)
{
    set(phase_, phase);
    if (phaseChanged)
        phaseChanged();
}

void DictationController::show()
{
    if (showWindow)
        showWindow();
}

PlatformSupport::Observers::Subscription DictationController::subscribe(std::function<void()> observer)
{
    return observers_.subscribe(std::move(observer));
}

} // namespace Sorvane
