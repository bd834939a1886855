// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/AccessibilityTesting.h"
#include "PublishedModels.h"
#include "WordErrors.h"
#include "X11/Keyboard.h"

#include <PlatformSupport/Environment.h>

#include <gtest/gtest.h>

namespace {

namespace KeySymbols = DesktopLinux::KeySymbols;

// The built application on a real desktop: the user presses keys and speaks, and looks at what stands in the field.
class DictationOnTheDesktop : public DesktopLinux::AccessibilityTesting {
protected:
    DictationOnTheDesktop()
    {
        while (sorvane.output().find("Ready for dictation.\n") == std::string::npos)
            EXPECT_TRUE(sorvane.hasWritten()) << sorvane.finish().errors;
    }

    void pressShortcut()
    {
        for (const auto key : { KeySymbols::alt, KeySymbols::space })
            keyboard.fakeKey(keyboard.keyWith(key).value_or(0), true);
        for (const auto key : { KeySymbols::space, KeySymbols::alt })
            keyboard.fakeKey(keyboard.keyWith(key).value_or(0), false);
        usersConnection.flush();
    }

    static void untilListening()
    {
        while (runProgram({ "pactl", "list", "short", "source-outputs" }).output.empty()) { }
    }

    // Comes back when the last sample has been heard.
    static void speak(const std::string& recording)
    {
        const std::string mouth
            = "--device=" + PlatformSupport::environmentVariable("DESKTOP_SESSION_MOUTH").value_or("");
        EXPECT_EQ(runProgram({ "paplay", mouth, SAMPLES_DIRECTORY "/" + recording + ".wav" }).status, 0);
    }

    // What stands in the field once anything does, without the brackets that it is told in.
    std::string textIn(const std::string& field)
    {
        std::string text;
        while (text.size() <= 2)
            text = form.ask("read " + field);
        return text.substr(1, text.size() - 2);
    }

    static size_t errors(const std::string& recording, const std::string& heard)
    {
        const auto said = runProgram({ "cat", SAMPLES_DIRECTORY "/" + recording + ".txt" }).output;
        return wordErrors(spokenWords(said), spokenWords(heard));
    }

    DesktopLinux::XConnection usersConnection { loop.executor() };
    DesktopLinux::Keyboard keyboard { usersConnection };
    PublishedModels models;
    RunningProgram sorvane { { TEST_PINS_PROGRAM }, models.environment() };
};

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
