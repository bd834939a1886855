// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "OtherProgram.h"
#include "X11/Keyboard.h"

#include <DesktopLinux/AccessibilityBus.h>
#include <DesktopLinux/JournalLog.h>
#include <DesktopLinux/LinuxPermissions.h>
#include <DesktopLinux/ProgramLaunching.h>
#include <DesktopLinux/Sound.h>
#include <DesktopLinux/X11Session.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/SystemClock.h>
#include <PlatformSupport/Task.h>
#include <Sorvane/TextInsertion.h>

#include <gtest/gtest.h>

#include <thread>

namespace Sorvane {

namespace {

using DesktopLinux::OtherProgram;
using DesktopServices::HotKeyEvent;
namespace KeySymbols = DesktopLinux::KeySymbols;
using Target = InsertionTarget;
using Clipboard = TextInsertion::Clipboard;

// Text on its way into a real program, on a real desktop.
class InsertionOnTheDesktop : public testing::Test {
protected:
    InsertionOnTheDesktop()
    {
        while (!permissions.isAccessibilityTrusted())
            loop.turn();
        x11.hotKey().setHandler([this](HotKeyEvent event) {
            ++shortcutEvents;
            if (event == HotKeyEvent::pressed && !target)
                capture();
        });
        EXPECT_TRUE(x11.hotKey().registerChord({ 49, DesktopServices::HotKeyModifier::option }));
    }

    void capture()
    {
        try {
            target = insertion.captureForRecording();
        } catch (const InsertionError& error) {
            failure = error.which();
        }
    }

    // The user goes to a field of the form; waits until all the desktop knows.
    void goTo(const std::string& field)
    {
        EXPECT_EQ(form.ask("focus " + field), "done");
        const auto hasFocus = [&] {
            const auto element = bus.accessibility()
                                     .applicationElement(form.process())
                                     .read("AXFocusedUIElement")
                                     .as<DesktopServices::AccessibilityElement>();
            return element && element->read("AXDescription").as<std::string>() == "A " + field + " for tests";
        };
        while (!hasFocus() || !x11.workspace().frontmostApplication())
            loop.turn();
    }

    // The user presses the shortcut and holds it until it is noticed.
    void pressShortcut()
    {
        for (const auto key : { KeySymbols::alt, KeySymbols::space })
            keyboard.fakeKey(keyboard.keyWith(key).value_or(0), true);
        loop.turnUntil([&] { return shortcutEvents > 0; });
        for (const auto key : { KeySymbols::space, KeySymbols::alt })
            keyboard.fakeKey(keyboard.keyWith(key).value_or(0), false);
        loop.turnUntil([&] { return !x11.isShortcutHeld(); });
    }

    void insert(const std::string& text, Clipboard clipboard = Clipboard::restored)
    {
        const auto work = [&] { return insertion.insert(text, target.value(), clipboard); };
        loop.finish(PlatformSupport::startTask(loop.executor(), work));
    }

    // What another program answers that asks this one meanwhile.
    std::string serve(OtherProgram& program, const std::string& command)
    {
        program.tell(command);
        std::string answer;
        const std::jthread reader([&] { loop.executor().execute([&, line = program.answer()] { answer = line; }); });
        loop.turnUntil([&] { return !answer.empty(); });
        return answer;
    }

    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::SystemClock clock;
    DesktopLinux::X11Session x11 { loop.executor(), clock };
    DesktopLinux::AccessibilityBus bus { loop.executor(), [this] { return x11.isShortcutHeld(); } };
    DesktopLinux::Sound sound;
    DesktopLinux::LinuxPermissions permissions { sound, bus };
    DesktopLinux::ProgramLaunching launching;
    DesktopLinux::JournalLog log;
    TextInsertion insertion { { bus.accessibility(), x11.workspace(), x11.pasteboard(), x11.keyEvents(), x11.hotKey(),
                                  permissions, launching, log },
        clock };

    DesktopLinux::XConnection usersConnection { loop.executor() };
    DesktopLinux::Keyboard keyboard { usersConnection };
    OtherProgram form { FORM_PROGRAM };
    OtherProgram other;
    int shortcutEvents = 0;
    std::optional<Target> target;
    std::optional<InsertionError::Case> failure;
};

TEST_F(InsertionOnTheDesktop, PutsTheTextIntoTheFieldAndGivesTheClipboardBack)
{
    other.ask("offer-text UTF8_STRING theirs");
    other.ask("offer image/png image/png 8 1000000");
    other.ask("copy");
    goTo("line");
    pressShortcut();
    ASSERT_TRUE(target);
    ASSERT_TRUE(target->element);
    insert("Grüße aus Köln");
    EXPECT_EQ(form.ask("read line"), "[Grüße aus Köln]");
    EXPECT_EQ(serve(other, "paste-text UTF8_STRING"), "theirs");
    EXPECT_EQ(serve(other, "paste image/png").substr(0, 19), "image/png 8 1000000");
}

TEST_F(InsertionOnTheDesktop, LeavesTheTextOnTheClipboardIfTheUserWantsIt)
{
    goTo("page");
    pressShortcut();
    ASSERT_TRUE(target);
    insert("two words", Clipboard::keepsTranscript);
    EXPECT_EQ(form.ask("read page"), "[two words]");
    EXPECT_EQ(serve(other, "paste-text UTF8_STRING"), "two words");
}

TEST_F(InsertionOnTheDesktop, BringsTheFieldBackFromBehindAnotherWindow)
{
    goTo("line");
    pressShortcut();
    ASSERT_TRUE(target);
    EXPECT_EQ(form.ask("focus page"), "done");
    other.ask("window Front");
    loop.turnUntil([&] {
        const auto front = x11.workspace().frontmostApplication();
        return front && front->processIdentifier() == other.process();
    });
    insert("late");
    EXPECT_EQ(form.ask("read line"), "[late]");
    EXPECT_EQ(form.ask("read page"), "[]");
}

TEST_F(InsertionOnTheDesktop, RefusesAPasswordField)
{
    goTo("password");
    pressShortcut();
    EXPECT_FALSE(target);
    EXPECT_EQ(failure, InsertionError::Case::secureField);
}

TEST_F(InsertionOnTheDesktop, FindsNoFieldWhereNothingCanBeTyped)
{
    goTo("button");
    pressShortcut();
    ASSERT_TRUE(target);
    EXPECT_FALSE(target->element);
    EXPECT_THROW(insert("words"), InsertionError);
}

TEST_F(InsertionOnTheDesktop, TypesNowhereIfTheFieldIsGone)
{
    other.ask("offer-text UTF8_STRING theirs");
    other.ask("copy");
    goTo("line");
    pressShortcut();
    ASSERT_TRUE(target);
    form.ask("remove line");
    EXPECT_THROW(insert("words"), InsertionError);
    EXPECT_EQ(form.ask("read page"), "[]");
    EXPECT_EQ(serve(other, "paste-text UTF8_STRING"), "theirs");
}

TEST_F(InsertionOnTheDesktop, IsNotHeldUpByAFrozenDestination)
{
    goTo("line");
    pressShortcut();
    ASSERT_TRUE(target);
    form.freeze();
    EXPECT_THROW(insert("words"), InsertionError);
}

} // namespace

} // namespace Sorvane
