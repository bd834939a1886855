// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/TaskContext.h>
#include <Sorvane/DictationController.h>

#include <utility>

// The part of the controller that faces the settings and the first run.
namespace Sorvane {

using PlatformSupport::Awaitable;
using Stage = ModelPreparation::Stage;

namespace {

constexpr auto microphoneSettings = "x-apple.systempreferences:com.apple.preference.security?Privacy_Microphone";
constexpr auto accessibilitySettings = "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

} // namespace

void DictationController::setMode(ActivationMode mode)
{
    set(settings_.mode, mode);
    services_.defaults.setString("activationMode", rawValue(mode));
}

void DictationController::setShortcut(Shortcut shortcut)
{
    set(settings_.shortcut, shortcut);
    services_.defaults.setString("shortcut", rawValue(shortcut));
    registerShortcut();
}

void DictationController::setPreviewBeforeInsert(bool preview)
{
    set(settings_.previewBeforeInsert, preview);
    services_.defaults.setBoolean("previewBeforeInsert", preview);
}

void DictationController::setAutomaticallyCopy(bool copy)
{
    set(settings_.automaticallyCopy, copy);
    services_.defaults.setBoolean("automaticallyCopy", copy);
}

void DictationController::setOutputModeSelection(OutputModeSelection selection)
{
    set(settings_.outputModeSelection, selection);
    services_.defaults.setString("outputModeSelection", rawValue(selection));
    set(outputMode_, resolved(selection, automaticOutputMode_));
}

void DictationController::registerShortcut()
{
    set(shortcutRegistered_, shortcut_.registerShortcut(settings_.shortcut));
    if (!shortcutRegistered_)
        set(status_, "That shortcut is in use. Choose another shortcut.");
}

void DictationController::refreshPermissions()
{
    using DesktopServices::AuthorizationStatus;
    const auto microphone = services_.desktop.permissions.microphoneStatus();
    set(microphoneAllowed_, microphone == AuthorizationStatus::authorized);
    set(microphoneDenied_, microphone == AuthorizationStatus::denied || microphone == AuthorizationStatus::restricted);
    set(accessibilityAllowed_, services_.desktop.permissions.isAccessibilityTrusted());
}

// The controller may be gone before the question is asked, and before it is answered.
void DictationController::requestMicrophone()
{
    const auto ask = [weak = self_.reference(), &permissions = services_.desktop.permissions]() -> Awaitable<void> {
        const bool allowed = co_await permissions.requestMicrophoneAccess();
        auto* const self = weak.get();
        if (!self)
            co_return;
        self->set(self->microphoneAllowed_, allowed);
        if (!allowed)
            self->services_.desktop.launching.open(microphoneSettings);
    };
    PlatformSupport::startTask(services_.mainThread, ask);
}

void DictationController::requestOnboardingMicrophone()
{
    const auto ask = [weak = self_.reference(), &permissions = services_.desktop.permissions]() -> Awaitable<void> {
        co_await permissions.requestMicrophoneAccess();
        if (auto* const self = weak.get())
            self->refreshPermissions();
    };
    PlatformSupport::startTask(services_.mainThread, ask);
}

void DictationController::requestAccessibility()
{
    services_.desktop.permissions.promptForAccessibility();
    services_.desktop.launching.open(accessibilitySettings);
}

// A loaded model alone is not enough: its preparation must have gone all the way.
SetupReadiness DictationController::readiness() const
{
    return {
        .phase = phase_,
        .modelReady = modelReady_ && preparation_.stage().which == Stage::Case::ready,
        .microphoneAllowed = microphoneAllowed_,
        .accessibilityAllowed = accessibilityAllowed_,
    };
}

void DictationController::prepareModel()
{
    if (phase_ != DictationPhase::idle && phase_ != DictationPhase::preparing)
        return;
    const auto speech = [weak = self_.reference()](ModelPreparation::Progress progress) -> Awaitable<void> {
        auto* const self = weak.get();
        if (!self)
            throw PlatformSupport::CancellationError();
        co_await self->prepareSpeech(std::move(progress));
    };
    preparation_.start(speech, services_.prepareCleanup);
}

Awaitable<void> DictationController::prepareSpeech(ModelPreparation::Progress progress)
{
    const auto weak = self_.reference();
    if (!model_) {
        const auto load = services_.loadSpeech; // outlives the controller, if that goes meanwhile
        auto model = co_await load(progress);
        if (!weak.get())
            throw PlatformSupport::CancellationError();
        model_ = std::move(model);
    }
    PlatformSupport::checkCancellation();
    set(modelDownloaded_, true);
    set(modelReady_, true);
    progress(1.0);
}

// The phase may be written here without a look at it: while a dictation is under way no preparation runs.
void DictationController::mirrorPreparation()
{
    set(status_, statusLine(preparation_.stage()));
    set(progress_, preparation_.fraction());
    enter(preparation_.task() ? DictationPhase::preparing : DictationPhase::idle);
}

} // namespace Sorvane
