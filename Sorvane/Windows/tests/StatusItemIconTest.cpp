// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WindowTest.h"

#include <Sorvane/StatusItemIcon.h>
#include <Sorvane/StatusItemViewModel.h>

#include <QAction>

namespace Sorvane {
namespace {

class StatusItemInTray : public WindowTest {
protected:
    QStringList titles()
    {
        QStringList all;
        for (const QAction* const action : icon.menu().actions())
            all += action->text();
        return all;
    }

    void choose(qsizetype entry) { icon.menu().actions().at(entry)->trigger(); }

    int setups = 0;
    int quits = 0;
    StatusItemViewModel model { dictation.controller, { [this] { ++setups; }, [this] { ++quits; } } };
    StatusItemIcon icon { model };
};

TEST_F(StatusItemInTray, OffersWhatThePhaseAllows)
{
    EXPECT_EQ(titles(), QStringList({ "Ready for dictation.", "Start dictation", "Quit Sorvane" }));
    dictation.controller.start();
    EXPECT_EQ(titles(),
        QStringList({ QString::fromStdString(dictation.controller.status()), "Finish dictation", "Pause dictation",
            "Cancel dictation", "Quit Sorvane" }));
}

TEST_F(StatusItemInTray, DoesWhatIsChosen)
{
    choose(1);
    dictation.loop.turn();
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::recording);
    choose(2);
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::paused);
    choose(3);
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::idle);
    choose(2);
    EXPECT_EQ(quits, 1);
}

TEST_F(StatusItemInTray, LooksAtThePermissionsWhenItIsOpened)
{
    dictation.desktop.permissions.accessibility = false;
    emit icon.menu().aboutToShow();
    EXPECT_EQ(titles().at(2), "Finish setup");
    choose(2);
    EXPECT_EQ(setups, 1);
    dictation.desktop.permissions.accessibility = true;
    emit icon.menu().aboutToShow();
    EXPECT_EQ(titles().at(2), "Quit Sorvane");
}

} // namespace
} // namespace Sorvane
