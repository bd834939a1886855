// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Stage.h"

#include <gtest/gtest.h>

// The controller goes while something of it waits: what comes back later finds it gone, and does no harm.
namespace Scenarios {
namespace {

using namespace std::chrono_literals;

class EndOfController : public ::testing::Test {
protected:
    void speakAndStop(Stage& stage)
    {
        stage.desktop.pasteboard.copy("shopping list");
        stage.desktop.hotKey.press();
        stage.desktop.hotKey.release();
        stage.speak("um said too late", 1);
        stage.desktop.hotKey.press();
        stage.loop.turn();
    }

    static void end(Stage& stage)
    {
        stage.controller.reset();
        stage.pass(5s);
    }

    Stage stage_ { Stage::Models::ready };
};

TEST_F(EndOfController, StartsNothingThatWasPending)
{
    stage_.desktop.bringToFront(stage_.desktop.sorvane());
    stage_.controller->toggleFromButton();
    stage_.pass(100ms);
    end(stage_);
    EXPECT_EQ(stage_.microphone.enginesMade(), 0U);
}

TEST_F(EndOfController, ReleasesTheMicrophone)
{
    stage_.desktop.hotKey.press();
    stage_.pass(100ms);
    EXPECT_TRUE(stage_.microphone.isRunning());
    end(stage_);
    EXPECT_FALSE(stage_.microphone.isRunning());
    EXPECT_FALSE(stage_.desktop.hotKey.chord());
}

TEST_F(EndOfController, DropsWhatTheEngineStillHears)
{
    stage_.engine->takes = 2s;
    speakAndStop(stage_);
    EXPECT_EQ(stage_.engine->calls, 1U);
    end(stage_);
    EXPECT_EQ(stage_.field("Notes").text(), "");
}

TEST_F(EndOfController, DropsWhatTheCleanupStillMakes)
{
    stage_.cleanup.takes = 2s;
    speakAndStop(stage_);
    EXPECT_EQ(stage_.cleanup.calls, 1U);
    end(stage_);
    EXPECT_EQ(stage_.field("Notes").text(), "");
}

TEST_F(EndOfController, GivesTheClipboardBackAfterAPaste)
{
    speakAndStop(stage_);
    stage_.pass(500ms);
    EXPECT_EQ(stage_.desktop.pasteboard.string(), "um said too late");
    end(stage_);
    EXPECT_EQ(stage_.desktop.pasteboard.string(), "shopping list");
}

TEST_F(EndOfController, PastesNothingIntoAFieldThatItWaitsFor)
{
    stage_.engine->takes = 1s;
    speakAndStop(stage_);
    stage_.desktop.bringToFront(stage_.application("Browser"));
    stage_.application("Editor").ignoreActivation();
    stage_.pass(1500ms);
    end(stage_);
    EXPECT_EQ(stage_.field("Notes").text(), "");
    EXPECT_EQ(stage_.desktop.pasteboard.string(), "shopping list");
}

TEST_F(EndOfController, LeavesAQuestionForTheMicrophoneUnheeded)
{
    stage_.controller->requestMicrophone();
    stage_.controller->requestOnboardingMicrophone();
    stage_.loop.turn();
    stage_.controller.reset();
    stage_.desktop.permissions.answerMicrophone(false);
    stage_.pass(1s);
    EXPECT_TRUE(stage_.desktop.launching.opened.empty());
}

TEST_F(EndOfController, MayComeBeforeTheQuestionForTheMicrophoneIsAsked)
{
    stage_.controller->requestMicrophone();
    stage_.controller->requestOnboardingMicrophone();
    end(stage_);
    stage_.desktop.permissions.answerMicrophone(false);
    stage_.pass(1s);
    EXPECT_TRUE(stage_.desktop.launching.opened.empty());
}

TEST(EndOfUnpreparedController, StopsItsPreparation)
{
    for (const auto moment : { 0ms, 500ms, 1500ms }) {
        Stage stage(Stage::Models::notPrepared);
        stage.controller->prepareModel();
        stage.pass(moment);
        stage.controller.reset();
        stage.pass(5s);
        EXPECT_EQ(stage.clock.sleepers(), 0U);
    }
}

} // namespace
} // namespace Scenarios
