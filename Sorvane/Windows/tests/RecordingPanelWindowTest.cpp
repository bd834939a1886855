// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WindowTest.h"

#include <Sorvane/RecordingPanelViewModel.h>
#include <Sorvane/RecordingPanelWindow.h>

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <chrono>

namespace Sorvane {
namespace {

// Whether something lighter than the capsule is drawn around a point.
bool isDrawnAt(const QImage& image, QPoint middle)
{
    constexpr int reach = 5;
    for (int y = -reach; y <= reach; ++y) {
        for (int x = -reach; x <= reach; ++x) {
            if (image.pixelColor(middle + QPoint(x, y)).lightness() > 60)
                return true;
        }
    }
    return false;
}

class RecordingPanelOnScreen : public WindowTest {
protected:
    RecordingPanelOnScreen()
    {
        dictation.controller.start();
        dictation.loop.turn();
    }

    void finish()
    {
        dictation.speak(0.25F);
        dictation.controller.finish();
        EXPECT_EQ(dictation.controller.phase(), DictationPhase::transcribing);
    }

    // Symbols are painted a picture later than the rest.
    bool appears(QPoint middle)
    {
        return QTest::qWaitFor([&] { return isDrawnAt(window.grabWindow(), middle); });
    }

    RecordingPanelViewModel panel { dictation.controller, dictation.clock };
    RecordingPanelWindow window { panel };
};

constexpr QPoint orb { 24, 24 };
constexpr QPoint stop { 72, 24 };

TEST_F(RecordingPanelOnScreen, StandsInTheMiddleAboveTheBottom)
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.size(), QSize(96, 48));
    EXPECT_NEAR(window.geometry().center().x(), screen.center().x(), 1);
    EXPECT_EQ(screen.y() + screen.height() - (window.y() + window.height()), 36);
}

TEST_F(RecordingPanelOnScreen, NeverTakesTheKeyboard)
{
    EXPECT_TRUE(window.flags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(window.flags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_NE(QGuiApplication::focusWindow(), &window);
}

TEST_F(RecordingPanelOnScreen, ShowsOrbAndStopWhileRecording)
{
    EXPECT_TRUE(appears(orb));
    EXPECT_TRUE(appears(stop));
    picture(window, "recording");
}

TEST_F(RecordingPanelOnScreen, ShowsALouderVoiceAsALargerOrb)
{
    const QImage quiet = picture(window, "quiet");
    dictation.speak(0.7F);
    dictation.pass(std::chrono::milliseconds(100));
    dictation.pass(std::chrono::milliseconds(500));
    panel.orb()->advance();
    EXPECT_NE(picture(window, "loud"), quiet);
}

TEST_F(RecordingPanelOnScreen, ShowsOnlyTheOrbWhileTheTranscriptIsFinished)
{
    finish();
    EXPECT_TRUE(appears(QPoint(48, 24)));
    EXPECT_FALSE(isDrawnAt(picture(window, "transcribing"), QPoint(84, 24)));
}

TEST_F(RecordingPanelOnScreen, PausesWhenTheOrbIsClicked)
{
    picture(window, "before-pause");
    QTest::mouseClick(&window, Qt::LeftButton, {}, orb);
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::paused);
    picture(window, "paused");
    QTest::mouseClick(&window, Qt::LeftButton, {}, orb);
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::recording);
}

TEST_F(RecordingPanelOnScreen, FinishesWhenTheStopControlIsClicked)
{
    dictation.speak(0.25F);
    picture(window, "before-stop");
    QTest::mouseClick(&window, Qt::LeftButton, {}, stop);
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::transcribing);
}

TEST_F(RecordingPanelOnScreen, ConfirmsAndGoesAway)
{
    finish();
    const auto notice = [&] { return dictation.controller.completion().state(); };
    while (notice() == CompletionFeedback::State::hidden)
        dictation.pass(std::chrono::milliseconds(50));
    ASSERT_EQ(notice(), CompletionFeedback::State::confirmation);
    EXPECT_EQ(window.size(), QSize(228, 44));
    EXPECT_TRUE(appears(QPoint(22, 22)));
    EXPECT_TRUE(appears(QPoint(50, 22)));
    picture(window, "confirmation");
    dictation.pass(CompletionFeedback::confirmationDuration);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(RecordingPanelOnScreen, ShowsTheTranscriptUntilItIsDismissed)
{
    dictation.controller.setPreviewBeforeInsert(true);
    finish();
    const auto notice = [&] { return dictation.controller.completion().state(); };
    while (notice() == CompletionFeedback::State::hidden)
        dictation.pass(std::chrono::milliseconds(50));
    ASSERT_EQ(notice(), CompletionFeedback::State::review);
    EXPECT_EQ(window.size(), QSize(380, 200));
    EXPECT_TRUE(appears(QPoint(30, 45)));
    picture(window, "review");
    QTest::mouseClick(&window, Qt::LeftButton, {}, QPoint(356, 24));
    EXPECT_FALSE(window.isVisible());
}

TEST_F(RecordingPanelOnScreen, IsGoneWhenTheDictationIsCancelled)
{
    dictation.controller.cancel();
    EXPECT_FALSE(window.isVisible());
}

} // namespace
} // namespace Sorvane
