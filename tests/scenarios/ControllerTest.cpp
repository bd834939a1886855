// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Stage.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

// What the controller shows its surroundings, where a story would not be the place for it: first values, what is
// stored, who is told of what, and in which order.
namespace Scenarios {
namespace {

using namespace std::chrono_literals;
using Notice = Sorvane::CompletionFeedback::State;
using Phase = Sorvane::DictationPhase;

class ControllerTest : public ::testing::Test {
protected:
    Sorvane::DictationController& controller() { return *stage_.controller; }

    void speakAndStop()
    {
        stage_.desktop.hotKey.press();
        stage_.desktop.hotKey.release();
        stage_.speak("Good morning.", 1);
        stage_.desktop.hotKey.press();
        stage_.desktop.hotKey.release();
    }

    Stage stage_ { Stage::Models::ready };
};

TEST(NewController, BeginsWithNothing)
{
    Stage stage(Stage::Models::notPrepared);
    const auto& controller = *stage.controller;
    EXPECT_EQ(controller.phase(), Phase::idle);
    EXPECT_EQ(controller.status(), "Set up once. Speak anywhere.");
    EXPECT_FALSE(controller.modelReady());
    EXPECT_FALSE(controller.modelDownloaded());
    EXPECT_EQ(controller.progress(), 0);
    EXPECT_EQ(controller.level(), 0);
    EXPECT_EQ(controller.elapsed(), 0);
    EXPECT_FALSE(controller.savedToHistory());
    EXPECT_EQ(controller.transcript(), "");
    EXPECT_EQ(controller.targetName(), "");
    EXPECT_EQ(controller.targetHarness(), std::nullopt);
    EXPECT_EQ(controller.outputMode(), Sorvane::TranscriptMode::clean);
    EXPECT_FALSE(controller.target());
    EXPECT_FALSE(controller.onboardingVisible);
    EXPECT_TRUE(controller.shortcutRegistered());
    EXPECT_TRUE(controller.microphoneAllowed());
    EXPECT_FALSE(controller.microphoneDenied());
    EXPECT_TRUE(controller.accessibilityAllowed());
    EXPECT_EQ(stage.controller->completion().state(), Notice::hidden);
    EXPECT_EQ(stage.controller->completion().confirmationText(), "Saved to history");
    EXPECT_EQ(stage.desktop.hotKey.chord(), keyChord(Sorvane::Shortcut::optionSpace));
}

TEST_F(ControllerTest, StoresEachSettingAsItIsChosen)
{
    controller().setMode(Sorvane::ActivationMode::hold);
    controller().setShortcut(Sorvane::Shortcut::commandShiftD);
    controller().setPreviewBeforeInsert(true);
    controller().setAutomaticallyCopy(false);
    controller().setOutputModeSelection(Sorvane::OutputModeSelection::automatic);
    EXPECT_EQ(stage_.defaults.string("activationMode"), "Hold to speak");
    EXPECT_EQ(stage_.defaults.string("shortcut"), "⇧ ⌘ D");
    EXPECT_EQ(stage_.defaults.boolean("previewBeforeInsert"), true);
    EXPECT_EQ(stage_.defaults.boolean("automaticallyCopy"), false);
    EXPECT_EQ(stage_.defaults.string("outputModeSelection"), "auto");
    EXPECT_FALSE(stage_.defaults.contains("outputMode"));
    EXPECT_FALSE(stage_.defaults.contains("experimentalCleanup"));
    EXPECT_EQ(stage_.desktop.hotKey.chord(), keyChord(Sorvane::Shortcut::commandShiftD));
}

TEST_F(ControllerTest, KeepsAShortcutChosenThatAnotherProgramHolds)
{
    stage_.desktop.hotKey.heldByOthers = { keyChord(Sorvane::Shortcut::commandShiftD) };
    controller().setShortcut(Sorvane::Shortcut::commandShiftD);
    EXPECT_FALSE(controller().shortcutRegistered());
    EXPECT_EQ(controller().settings().shortcut, Sorvane::Shortcut::commandShiftD);
    EXPECT_EQ(stage_.defaults.string("shortcut"), "⇧ ⌘ D");
    stage_.desktop.hotKey.heldByOthers.clear();
    controller().registerShortcut();
    EXPECT_TRUE(controller().shortcutRegistered());
    EXPECT_EQ(
        controller().status(), "That shortcut is in use. Choose another shortcut."); // until something else happens
}

TEST_F(ControllerTest, WakesItsObserversOnlyForChangedPermissions)
{
    int changes = 0;
    const auto observation = controller().subscribe([&] { ++changes; });
    controller().refreshPermissions();
    EXPECT_EQ(changes, 0);
    stage_.desktop.permissions.microphone = DesktopServices::AuthorizationStatus::restricted;
    controller().refreshPermissions();
    EXPECT_EQ(changes, 2); // not allowed any more, and denied
    EXPECT_TRUE(controller().microphoneDenied());
    stage_.desktop.permissions.microphone = DesktopServices::AuthorizationStatus::denied;
    controller().refreshPermissions();
    EXPECT_EQ(changes, 2);
    stage_.desktop.permissions.accessibility = false;
    controller().refreshPermissions();
    EXPECT_EQ(changes, 3);
}

TEST_F(ControllerTest, LeavesAMicrophoneThatWasNeverAskedForOpen)
{
    stage_.desktop.permissions.microphone = DesktopServices::AuthorizationStatus::notDetermined;
    controller().refreshPermissions();
    EXPECT_FALSE(controller().microphoneAllowed());
    EXPECT_FALSE(controller().microphoneDenied());
}

// Each change of the phase and of the notice, with what stood there at that moment.
TEST_F(ControllerTest, TellsOfItsPhasesInOrder)
{
    std::vector<std::pair<Phase, std::string>> phases;
    controller().phaseChanged = [&] { phases.emplace_back(controller().phase(), controller().status()); };
    stage_.desktop.hotKey.press();
    stage_.desktop.hotKey.release();
    stage_.speak("Good morning.", 1);
    controller().pause();
    controller().resume();
    stage_.desktop.hotKey.press();
    stage_.pass(1s);
    EXPECT_EQ(phases,
        (std::vector<std::pair<Phase, std::string>> {
            { Phase::idle, "Ready for dictation." }, // the notice before goes
            { Phase::recording, "Listening…" }, { Phase::paused, "Microphone off" }, { Phase::recording, "Listening…" },
            { Phase::transcribing, "Listening…" }, { Phase::idle, "Inserted in Editor." },
            { Phase::idle, "Inserted in Editor." }, // the notice is made new: hidden,
            { Phase::idle, "Inserted in Editor." }, // then shown
        }));
}

TEST_F(ControllerTest, TellsItsObserversOfTheNotice)
{
    std::vector<Notice> notices;
    const auto observation = controller().subscribe([&] {
        const auto notice = controller().completion().state();
        if (notices.empty() || notices.back() != notice)
            notices.push_back(notice);
    });
    speakAndStop();
    stage_.pass(3s);
    EXPECT_EQ(notices, (std::vector { Notice::hidden, Notice::confirmation, Notice::hidden }));
}

TEST_F(ControllerTest, StoresATranscriptWithWhereAndWhenItWasSpoken)
{
    stage_.desktop.bringToFront(stage_.application("Browser"));
    stage_.pass(1h);
    const auto start = stage_.clock.date();
    stage_.desktop.hotKey.press();
    stage_.desktop.hotKey.release();
    stage_.pass(5s); // of silence
    stage_.speak("Good morning.", 1.5);
    stage_.desktop.hotKey.press();
    stage_.pass(1s);
    const auto& entry = controller().history().entries().at(0);
    EXPECT_EQ(entry.text, "Good morning.");
    EXPECT_EQ(entry.appName, "Browser");
    EXPECT_EQ(entry.bundleIdentifier, "com.google.Chrome");
    EXPECT_EQ(entry.createdAt, start);
    EXPECT_EQ(entry.duration, 1.5);
    EXPECT_EQ(entry.harness, std::nullopt);
    EXPECT_TRUE(controller().savedToHistory());
}

TEST_F(ControllerTest, StoresATranscriptBeforeAnythingElseIsDoneToIt)
{
    stage_.cleanup.takes = 1s;
    speakAndStop();
    stage_.pass(500ms);
    EXPECT_EQ(controller().status(), "Cleaning up dictation…");
    EXPECT_EQ(controller().transcript(), "Good morning.");
    EXPECT_TRUE(controller().savedToHistory());
    EXPECT_EQ(controller().history().entries().size(), 1U);
}

TEST_F(ControllerTest, ForgetsTheLastDictationWhenTheNextOneBegins)
{
    speakAndStop();
    stage_.pass(1s);
    EXPECT_TRUE(controller().savedToHistory());
    EXPECT_EQ(controller().elapsed(), 1);
    stage_.desktop.hotKey.press();
    EXPECT_FALSE(controller().savedToHistory());
    EXPECT_EQ(controller().elapsed(), 0);
    EXPECT_EQ(controller().transcript(), "");
    EXPECT_EQ(controller().completion().state(), Notice::hidden);
}

TEST_F(ControllerTest, MeasuresARecordingInOnePlaceAtATime)
{
    stage_.desktop.hotKey.press();
    stage_.loop.turn();
    controller().pause();
    controller().resume();
    stage_.loop.turn();
    EXPECT_EQ(stage_.clock.sleepers(), 1U);
    controller().pause();
    stage_.loop.turn();
    EXPECT_EQ(stage_.clock.sleepers(), 0U);
}

TEST_F(ControllerTest, SwitchesOnTheElementsOfWhatComesToTheFront)
{
    const auto changes = [&] { return stage_.desktop.accessibility.changes().size(); };
    stage_.application("Browser").becomeAnother({ .isBuiltOnElectron = true });
    stage_.desktop.bringToFront(stage_.application("Browser"));
    EXPECT_EQ(changes(), 1U);
    stage_.desktop.sorvane().becomeAnother({ .isBuiltOnElectron = true });
    stage_.desktop.bringToFront(stage_.desktop.sorvane());
    EXPECT_EQ(changes(), 1U);
}

TEST_F(ControllerTest, SwitchesOnTheElementsOfWhatIsInFrontAtItsBeginning)
{
    stage_.application("Editor").becomeAnother({ .isBuiltOnElectron = true });
    stage_.restart();
    EXPECT_EQ(
        stage_.desktop.accessibility.changes(), (std::vector<std::string> { "write AXManualAccessibility true" }));
}

TEST_F(ControllerTest, KeepsTheDestinationOfTheLastDictationWhenNoneCanBegin)
{
    speakAndStop();
    stage_.pass(1s);
    stage_.desktop.bringToFront(stage_.desktop.sorvane());
    controller().start();
    EXPECT_EQ(controller().targetName(), "Editor");
    ASSERT_TRUE(controller().target());
    EXPECT_EQ(controller().target()->element, stage_.field("Notes").handle());
}

TEST_F(ControllerTest, IsReadyOnlyWithAllThatADictationNeeds)
{
    EXPECT_EQ(controller().readiness().blocker(), std::nullopt);
    stage_.desktop.permissions.accessibility = false;
    controller().refreshPermissions();
    EXPECT_TRUE(controller().readiness().blocker());
    EXPECT_TRUE(controller().readiness().modelReady);
    EXPECT_FALSE(controller().readiness().accessibilityAllowed);
}

TEST(ControllerInPreparation, ShowsHowFarItIs)
{
    Stage stage(Stage::Models::notPrepared);
    auto& controller = *stage.controller;
    stage.cleanupPreparationFailure = "No network.";
    controller.prepareModel();
    EXPECT_EQ(controller.phase(), Phase::preparing);
    EXPECT_EQ(controller.progress(), 0);
    EXPECT_FALSE(controller.modelReady());
    stage.pass(1s);
    EXPECT_TRUE(controller.modelReady());
    EXPECT_TRUE(controller.modelDownloaded());
    EXPECT_FALSE(controller.readiness().modelReady); // the cleanup is still to come
    stage.pass(1s);
    EXPECT_EQ(controller.phase(), Phase::idle);
    EXPECT_FALSE(controller.readiness().modelReady);
    stage.cleanupPreparationFailure.reset();
    controller.prepareModel();
    stage.pass(1s);
    EXPECT_EQ(controller.progress(), 1);
    EXPECT_TRUE(controller.readiness().modelReady);
}

} // namespace
} // namespace Scenarios
