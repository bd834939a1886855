// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DictationOnFakes.h"

#include <Sorvane/RecordingPanelViewModel.h>
#include <Sorvane/StatusItemViewModel.h>

#include <gtest/gtest.h>

namespace Sorvane {
namespace {

class RecordingPanel : public ::testing::Test {
protected:
    DictationOnFakes dictation;
    RecordingPanelViewModel panel { dictation.controller, dictation.clock };
};

TEST_F(RecordingPanel, HoldsNothingUntilADictationStarts)
{
    EXPECT_EQ(panel.content(), "nothing");
    dictation.controller.start();
    EXPECT_EQ(panel.content(), "recorderBar");
    EXPECT_EQ(panel.value(), "Recording");
    EXPECT_TRUE(panel.recording());
    EXPECT_TRUE(panel.orb()->active());
}

TEST_F(RecordingPanel, SaysWhenItChanges)
{
    int changes = 0;
    QObject::connect(&panel, &RecordingPanelViewModel::changed, [&] { ++changes; });
    dictation.controller.start();
    EXPECT_GT(changes, 0);
}

TEST_F(RecordingPanel, PausesAndResumesByItsOrb)
{
    dictation.controller.start();
    panel.pressOrb();
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::paused);
    EXPECT_EQ(panel.orbLabel(), "Resume dictation");
    EXPECT_EQ(panel.orbSymbol(), "play.fill");
    EXPECT_FALSE(panel.orb()->active());
    panel.pressOrb();
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::recording);
    EXPECT_EQ(panel.orbLabel(), "Pause dictation");
}

TEST_F(RecordingPanel, FinishesByItsStopControl)
{
    dictation.controller.start();
    dictation.speak(0.25F);
    EXPECT_TRUE(panel.canStop());
    EXPECT_EQ(panel.stopLabel(), "Stop recording");
    panel.pressStop();
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::transcribing);
    EXPECT_EQ(panel.barWidth(), 48);
    EXPECT_TRUE(panel.showsProgress());
    EXPECT_FALSE(panel.canStop());
    EXPECT_EQ(panel.stopLabel(), "");
}

TEST_F(RecordingPanel, CancelsByItsOrbWhileTheTranscriptIsFinished)
{
    dictation.controller.start();
    dictation.speak(0.25F);
    panel.pressStop();
    panel.pressOrb();
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::idle);
    EXPECT_EQ(panel.content(), "nothing");
}

TEST_F(RecordingPanel, MovesItsOrbWithTheVoice)
{
    dictation.controller.start();
    dictation.loop.turn();
    dictation.speak(0.5F);
    dictation.pass(std::chrono::milliseconds(100));
    dictation.pass(std::chrono::seconds(1));
    panel.orb()->advance();
    EXPECT_GT(panel.orb()->energy(), 0.9);
}

class StatusItemModel : public ::testing::Test {
protected:
    DictationOnFakes dictation;
    int quits = 0;
    StatusItemViewModel model { dictation.controller, { [] {}, [this] { ++quits; } } };
};

TEST_F(StatusItemModel, StartsFinishesAndCancels)
{
    model.perform(StatusItem::Action::toggle);
    dictation.loop.turn();
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::recording);
    EXPECT_EQ(model.toolTip(), "Sorvane is recording");
    dictation.speak(0.25F);
    model.perform(StatusItem::Action::togglePause);
    EXPECT_EQ(model.toolTip(), "Sorvane is paused");
    model.perform(StatusItem::Action::toggle);
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::transcribing);
    model.perform(StatusItem::Action::cancel);
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::idle);
    EXPECT_EQ(quits, 0);
}

TEST_F(StatusItemModel, Quits)
{
    model.perform(StatusItem::Action::quit);
    EXPECT_EQ(quits, 1);
}

TEST_F(StatusItemModel, SaysNothingWhileOnlyTheLevelChanges)
{
    dictation.controller.start();
    int changes = 0;
    QObject::connect(&model, &StatusItemViewModel::changed, [&] { ++changes; });
    dictation.loop.turn();
    dictation.speak(0.5F);
    dictation.pass(std::chrono::milliseconds(100));
    EXPECT_EQ(changes, 0);
}

} // namespace
} // namespace Sorvane
