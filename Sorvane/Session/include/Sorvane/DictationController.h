// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Observers.h>
#include <PlatformSupport/Task.h>
#include <PlatformSupport/UUID.h>
#include <PlatformSupport/WeakSelf.h>
#include <Sorvane/AudioRecorder.h>
#include <Sorvane/CompletionFeedback.h>
#include <Sorvane/DictationPhase.h>
#include <Sorvane/DictationServices.h>
#include <Sorvane/GlobalShortcut.h>
#include <Sorvane/ModelPreparation.h>
#include <Sorvane/Settings.h>
#include <Sorvane/SetupReadiness.h>
#include <Sorvane/TextInsertion.h>
#include <Sorvane/TranscriptHistory.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Sorvane {

// The one object that owns a dictation, from the press of the key until its text is delivered. It lives as long as
// the application; every window, panel and menu observes it, and it alone changes the phase.
//
// Each dictation has an identity, the session. Work that outlives a dictation compares it whenever it comes back, and
// ends without a trace when it has changed.
//
// Main thread.
class DictationController {
public:
    // The services must outlive the controller.
    explicit DictationController(DictationServices services);
    DictationController(const DictationController&) = delete;
    DictationController& operator=(const DictationController&) = delete;
    ~DictationController();

    // Each event of the shortcut.
    void handleShortcut(bool pressed);

    // The start and stop command of a button or a menu.
    void toggleFromButton();

    // Starts where this application itself may be in front: the last other one is brought forward first.
    enum class StartCondition { none, heldShortcut };
    void startFromApp(StartCondition condition);

    void start();
    void pause();
    void resume();
    void togglePause();
    void finish();

    // Abandons the current dictation.
    void cancel();

    // Stops everything before the application quits.
    void shutdown();

    // Ends the session with a message. The only way from `transcribing` to `idle`.
    void complete(const std::string& message);

    // The settings, stored as they are changed.
    void setMode(ActivationMode mode);
    void setShortcut(Shortcut shortcut); // registers it
    void setPreviewBeforeInsert(bool preview);
    void setAutomaticallyCopy(bool copy);
    void setOutputModeSelection(OutputModeSelection selection);
    const Settings& settings() const { return settings_; }

    void registerShortcut();
    void refreshPermissions();
    void requestMicrophone();
    void requestOnboardingMicrophone();
    void requestAccessibility();
    SetupReadiness readiness() const;

    // Gets the models ready, unless a dictation is under way.
    void prepareModel();

    // Observable.
    DictationPhase phase() const { return phase_; }
    bool modelReady() const { return modelReady_; }
    bool modelDownloaded() const { return modelDownloaded_; }
    double progress() const { return progress_; } // of the preparation's stage, 0 to 1
    const std::string& status() const { return status_; } // the one line that the user sees
    bool microphoneAllowed() const { return microphoneAllowed_; }
    bool microphoneDenied() const { return microphoneDenied_; }
    bool accessibilityAllowed() const { return accessibilityAllowed_; }
    double level() const { return level_; } // 0 to 1
    double elapsed() const { return elapsed_; } // seconds of captured audio, pauses excluded
    bool savedToHistory() const { return savedToHistory_; } // the last transcript
    const std::string& transcript() const { return transcript_; } // the last one, as the user would get it
    const std::string& targetName() const { return targetName_; }
    std::optional<CodingHarness> targetHarness() const { return targetHarness_; }
    bool shortcutRegistered() const { return shortcutRegistered_; }
    TranscriptMode outputMode() const { return outputMode_; } // in force for the next finish

    const std::optional<TextInsertion::Target>& target() const { return target_; } // of the current or last dictation
    TranscriptHistory& history() { return history_; }
    ModelPreparation& preparation() { return preparation_; }
    CompletionFeedback& completion() { return completion_; }

    // Told after each change of what is observable.
    [[nodiscard]] PlatformSupport::Observers::Subscription subscribe(std::function<void()> observer);

    // The first-run window is on the screen, and how to close it.
    bool onboardingVisible = false;
    std::function<void()> dismissOnboarding;

    std::function<void()> showWindow; // opens the main window
    std::function<void()> phaseChanged; // called after each change of the phase and of the notice

private:
    class Finishing;
    using Weak = PlatformSupport::WeakReference<DictationController>;

    template <typename T, typename Value> void set(T& field, Value&& value);
    void enter(DictationPhase phase);
    void watchApplications();
    void show();

    static PlatformSupport::Awaitable<void> pendingStart(Weak weak, StartCondition condition);
    PlatformSupport::Awaitable<void> leaveOwnWindow() const;
    bool isWanted(StartCondition condition) const;
    void begin();
    void capture();
    std::string listening() const;
    void startMeter();
    static PlatformSupport::Awaitable<void> meter(Weak weak, PlatformSupport::Clock& clock);
    void measure();
    void stopWork();
    void fail(const std::string& description);

    void mirrorPreparation();
    PlatformSupport::Awaitable<void> prepareSpeech(ModelPreparation::Progress progress);

    DictationServices services_;
    PlatformSupport::Observers observers_;

    DictationPhase phase_ = DictationPhase::idle;
    bool modelReady_ = false;
    bool modelDownloaded_ = false;
    double progress_ = 0;
    std::string status_ = "Set up once. Speak anywhere.";
    bool microphoneAllowed_ = false;
    bool microphoneDenied_ = false;
    bool accessibilityAllowed_ = false;
    double level_ = 0;
    double elapsed_ = 0;
    bool savedToHistory_ = false;
    std::string transcript_;
    std::string targetName_;
    std::optional<CodingHarness> targetHarness_;
    bool shortcutRegistered_ = false;
    Settings settings_;
    TranscriptMode outputMode_ = TranscriptMode::clean;
    TranscriptMode automaticOutputMode_ = TranscriptMode::clean; // what was detected at the last start

    TranscriptHistory history_;
    ModelPreparation preparation_;
    CompletionFeedback completion_;
    AudioRecorder audio_;
    std::shared_ptr<TextInsertion> insertion_; // shared with insertions that outlive the controller
    GlobalShortcut shortcut_;
    std::shared_ptr<SpeechEngine> model_;

    std::optional<TextInsertion::Target> target_;
    std::optional<PlatformSupport::Task<>> pendingStartTask_;
    std::optional<PlatformSupport::Task<>> meterTask_;
    std::optional<PlatformSupport::Task<>> finishTask_;
    PlatformSupport::UUID session_;
    PlatformSupport::Clock::Date startedAt_;
    bool holdPressed_ = false; // the shortcut is physically held
    std::shared_ptr<DesktopServices::RunningApplication> lastExternalApp_;
    DesktopServices::Workspace::Subscription activations_;
    PlatformSupport::WeakSelf<DictationController> self_ { this };
};

// Tells the observers, if that changes anything.
template <typename T, typename Value> void DictationController::set(T& field, Value&& value)
{
    if (field == value)
        return;
    field = std::forward<Value>(value);
    observers_.notify();
}

} // namespace Sorvane
