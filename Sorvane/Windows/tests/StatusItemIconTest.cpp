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
    QStringList titles() const
    {
        QStringList all;
        for (const QAction* const action : icon.menu().actions())
            all += action->text();
        return all;
    }

    void choose(qsizetype entry) { icon.menu().actions().at(entry)->trigger(); }

    int quits = 0;
    StatusItemViewModel model { dictation.controller, [this] { ++quits; } };
    StatusItemIcon icon { model };
};

TEST_F(StatusItemInTray, OffersWhatThePhaseAllows)
{
    EXPECT_EQ(titles(), QStringList({ "Start dictation", "Quit Sorvane" }));
    dictation.controller.start();
    EXPECT_EQ(titles(), QStringList({ "Finish dictation", "Pause dictation", "Cancel dictation", "Quit Sorvane" }));
}

TEST_F(StatusItemInTray, DoesWhatIsChosen)
{
    choose(0);
    dictation.loop.turn();
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::recording);
    choose(1);
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::paused);
    choose(2);
    EXPECT_EQ(dictation.controller.phase(), DictationPhase::idle);
    choose(1);
    EXPECT_EQ(quits, 1);
}

} // namespace
} // namespace Sorvane
