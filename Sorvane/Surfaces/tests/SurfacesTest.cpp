// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/RecorderBar.h>
#include <Sorvane/RecordingPanel.h>
#include <Sorvane/StatusItem.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Sorvane {
namespace {

using Notice = CompletionFeedback::State;
using Phase = DictationPhase;

TEST(RecorderBar, PausesAndStopsWhileRecording)
{
    const auto bar = recorderBar(Phase::recording);
    EXPECT_EQ(bar.value, "Recording");
    EXPECT_EQ(bar.width, 96);
    EXPECT_EQ(bar.orb, (RecorderBar::Control { "Pause dictation", "pause.fill", RecorderBar::Action::togglePause }));
    EXPECT_EQ(bar.stop, (RecorderBar::Control { "Stop recording", "stop.fill", RecorderBar::Action::finish }));
    EXPECT_FALSE(bar.showsProgress);
}

TEST(RecorderBar, ResumesAndStopsWhilePaused)
{
    const auto bar = recorderBar(Phase::paused);
    EXPECT_EQ(bar.value, "Paused");
    EXPECT_EQ(bar.width, 96);
    EXPECT_EQ(bar.orb, (RecorderBar::Control { "Resume dictation", "play.fill", RecorderBar::Action::togglePause }));
    EXPECT_TRUE(bar.stop);
}

TEST(RecorderBar, IsAnOrbThatCancelsWhileTheTranscriptIsFinished)
{
    const auto bar = recorderBar(Phase::transcribing);
    EXPECT_EQ(bar.value, "Finishing transcript");
    EXPECT_EQ(bar.width, 48);
    EXPECT_EQ(bar.orb, (RecorderBar::Control { "Cancel dictation", "xmark", RecorderBar::Action::cancel }));
    EXPECT_FALSE(bar.stop);
    EXPECT_TRUE(bar.showsProgress);
}

TEST(RecordingPanel, IsThereDuringADictation)
{
    for (const auto phase : { Phase::recording, Phase::paused, Phase::transcribing })
        EXPECT_EQ(recordingPanelContent(phase, Notice::hidden), RecordingPanelContent::recorderBar);
    for (const auto phase : { Phase::idle, Phase::preparing })
        EXPECT_EQ(recordingPanelContent(phase, Notice::hidden), RecordingPanelContent::nothing);
}

TEST(RecordingPanel, ConfirmsInAnyPhaseAndReviewsWhenIdle)
{
    EXPECT_EQ(recordingPanelContent(Phase::idle, Notice::confirmation), RecordingPanelContent::confirmation);
    EXPECT_EQ(recordingPanelContent(Phase::transcribing, Notice::confirmation), RecordingPanelContent::confirmation);
    EXPECT_EQ(recordingPanelContent(Phase::idle, Notice::review), RecordingPanelContent::review);
    EXPECT_EQ(recordingPanelContent(Phase::recording, Notice::review), RecordingPanelContent::recorderBar);
}

TEST(RecordingPanel, StandsInTheMiddleAboveTheBottomOfItsScreen)
{
    const ScreenRectangle screen { .x = 1920, .y = 30, .width = 1000, .height = 700 };
    EXPECT_EQ(recordingPanelPlace(screen, Notice::hidden), (ScreenRectangle { 2372, 646, 96, 48 }));
    EXPECT_EQ(recordingPanelPlace(screen, Notice::confirmation), (ScreenRectangle { 2306, 650, 228, 44 }));
    EXPECT_EQ(recordingPanelPlace(screen, Notice::review), (ScreenRectangle { 2230, 494, 380, 200 }));
}

std::vector<std::string> titles(const StatusItem& item)
{
    std::vector<std::string> all;
    for (const auto& entry : item.menu)
        all.emplace_back(entry.title);
    return all;
}

StatusItem itemIn(Phase phase)
{
    return statusItem({ .phase = phase, .setupComplete = true, .status = "Ready for dictation." });
}

TEST(StatusItem, TellsThePhaseInItsToolTip)
{
    EXPECT_EQ(itemIn(Phase::paused).toolTip, "Sorvane is paused");
    EXPECT_EQ(itemIn(Phase::recording).toolTip, "Sorvane is recording");
    for (const auto phase : { Phase::idle, Phase::preparing, Phase::transcribing })
        EXPECT_EQ(itemIn(phase).toolTip, "Sorvane dictation");
}

TEST(StatusItem, OffersWhatThePhaseAllows)
{
    using Titles = std::vector<std::string>;
    const std::string status = "Ready for dictation.";
    EXPECT_EQ(titles(itemIn(Phase::idle)), (Titles { status, "Start dictation", "Quit Sorvane" }));
    EXPECT_EQ(titles(itemIn(Phase::preparing)), (Titles { status, "Getting ready", "Quit Sorvane" }));
    EXPECT_EQ(titles(itemIn(Phase::recording)),
        (Titles { status, "Finish dictation", "Pause dictation", "Cancel dictation", "Quit Sorvane" }));
    EXPECT_EQ(titles(itemIn(Phase::paused)),
        (Titles { status, "Finish dictation", "Resume dictation", "Cancel dictation", "Quit Sorvane" }));
    EXPECT_EQ(titles(itemIn(Phase::transcribing)),
        (Titles { status, "Finishing transcript", "Cancel dictation", "Quit Sorvane" }));
}

TEST(StatusItem, OffersToFinishTheSetup)
{
    StatusItemState state { .status = "There is no connection." };
    EXPECT_EQ(titles(statusItem(state)),
        (std::vector<std::string> { "There is no connection.", "Start dictation", "Finish setup", "Quit Sorvane" }));
    state.phase = Phase::preparing; // under way
    EXPECT_EQ(statusItem(state).menu.size(), 3U);
}

TEST(StatusItem, StartsOnlyWhatCanStart)
{
    const auto canStart = [](Phase phase, bool canRecord) {
        return statusItem({ .phase = phase, .canRecord = canRecord }).menu.at(1).isEnabled;
    };
    EXPECT_TRUE(canStart(Phase::idle, true));
    EXPECT_FALSE(canStart(Phase::idle, false));
    EXPECT_TRUE(canStart(Phase::recording, false));
    EXPECT_FALSE(canStart(Phase::transcribing, false));
    EXPECT_FALSE(statusItem({}).menu.front().isEnabled);
}

} // namespace
} // namespace Sorvane
