// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DictationOnTheDesktop.h"

#include <gtest/gtest.h>

namespace {

TEST_F(DictationOnTheDesktop, PutsTheSpokenWordsIntoTheField)
{
    focus(form, "page");
    pressShortcut();
    untilListening();
    speak("meeting-note");
    pressShortcut();
    EXPECT_LE(errors("meeting-note", textIn("page")), 2U);
}

TEST_F(DictationOnTheDesktop, RunsOnce)
{
    const auto second = runProgram({ TEST_PINS_PROGRAM }, models.environment());
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.errors, "sorvane: Sorvane is already running\n");
}

TEST_F(DictationOnTheDesktop, EndsWhenItIsAskedTo)
{
    sorvane.interrupt();
    EXPECT_EQ(sorvane.finish().status, 0);
}

// There is nothing yet that could be quit.
TEST_F(DictationOnTheDesktop, EndsWhenItIsAskedToWhileItStarts)
{
    auto environment = models.environment();
    environment["XDG_RUNTIME_DIR"] = models.temporary(); // where it is the only one
    RunningProgram second { { TEST_PINS_PROGRAM }, environment };
    while (!second.holdsBackInterrupts()) { }
    second.interrupt();
    EXPECT_EQ(second.finish().status, 0);
}

TEST(DictationWithoutADesktop, IsRefused)
{
    const auto outcome = runSorvane({}, { { "DISPLAY", "" } });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "sorvane: There is no X display.\n");
}

} // namespace
