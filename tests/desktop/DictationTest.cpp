// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DictationOnTheDesktop.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

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

TEST_F(DictationOnTheDesktop, HasTheWordsTidiedBeforeTheyStandThere)
{
    const auto generator = models.cleanup() / "runtime/llama-completion";
    std::filesystem::remove(generator);
    std::ofstream(generator) << "#!/bin/sh\nprintf 'Tidied words.<|im_end|> [end of text]'\n";
    std::filesystem::permissions(generator, std::filesystem::perms::owner_all);
    focus(form, "page");
    pressShortcut();
    untilListening();
    speak("meeting-note");
    pressShortcut();
    EXPECT_EQ(textIn("page"), "Tidied words.");
}

TEST_F(DictationOnTheDesktop, RunsOnce)
{
    const auto second = runProgram({ TEST_PINS_PROGRAM }, models.environment());
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.errors, "sorvane: Sorvane is already running\n");
}

TEST_F(DictationOnTheDesktop, RunsOnceWhereNobodyFindsTheOther)
{
    auto environment = models.environment();
    environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nowhere";
    EXPECT_EQ(runProgram({ TEST_PINS_PROGRAM }, environment).status, 1);
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

TEST(DictationThatIsNotSetUp, GoesOnWithItWhenItIsStartedAgain)
{
    const PublishedModels models;
    models.hub.play(R"({"on": "tree", "status": 500, "times": 1})");
    RunningProgram sorvane { { TEST_PINS_PROGRAM }, models.environment() };
    const auto await = [&](const std::string& line) {
        while (sorvane.output().find(line) == std::string::npos)
            ASSERT_TRUE(sorvane.hasWritten()) << sorvane.finish().errors;
    };
    await("Retry when you’re ready.\n");
    EXPECT_EQ(models.run({ TEST_PINS_PROGRAM }).status, 0);
    await("Ready for dictation.\n");
}

TEST(DictationWithoutADesktop, IsRefused)
{
    const auto outcome = runSorvane({}, { { "DISPLAY", "" } });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "sorvane: There is no X display.\n");
}

} // namespace
