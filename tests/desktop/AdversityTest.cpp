// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InsertionOnTheDesktop.h"

#include <PlatformSupport/HandTurnedClock.h>

#include <cstdlib>

namespace Sorvane {

namespace {

using Case = InsertionError::Case;
namespace KeySymbols = DesktopLinux::KeySymbols;
using namespace std::chrono_literals;

// What may become of the destination between speaking and pasting.
class AdversityOnTheDesktop : public InsertionOnTheDesktop {
protected:
    void copyTheirs()
    {
        other.ask("offer-text UTF8_STRING theirs");
        other.ask("copy");
    }

    // Into the field that was spoken into, wherever the user has gone meanwhile.
    void expectInserted()
    {
        copyTheirs();
        insert("spoken");
        EXPECT_EQ(form.ask("read line"), "[spoken]");
        EXPECT_EQ(form.ask("read page"), "[]");
        EXPECT_EQ(serve(other, "paste-text UTF8_STRING"), "theirs");
    }

    void expectFailure(Case expected)
    {
        copyTheirs();
        EXPECT_EQ(failureOf(startInserting("spoken")), expected);
        EXPECT_EQ(serve(other, "paste-text UTF8_STRING"), "theirs");
    }

    std::string lastLogEntry() const { return log.entries.empty() ? "" : log.entries.back().text; }

    // A window of this program, in front.
    void openOwnWindow()
    {
        const auto window = xcb_generate_id(usersConnection.get());
        xcb_create_window(usersConnection.get(), XCB_COPY_FROM_PARENT, window, usersConnection.root(), 0, 0, 200, 100,
            0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(usersConnection.get(), window);
        usersConnection.flush();
        loop.turnUntil([this] {
            const auto front = x11.workspace().frontmostApplication();
            return front && front->processIdentifier() == x11.workspace().ownProcessIdentifier();
        });
    }
};

TEST_F(AdversityOnTheDesktop, FollowsAWindowThatIsMoved)
{
    speakInto("line");
    form.ask("move window");
    expectInserted();
}

TEST_F(AdversityOnTheDesktop, BringsAMinimisedWindowBack)
{
    speakInto("line");
    form.ask("minimise window");
    untilUnfocused();
    expectInserted();
}

TEST_F(AdversityOnTheDesktop, BringsTheFieldBackFromAnotherOfItsWindow)
{
    speakInto("line");
    goTo("page");
    expectInserted();
}

TEST_F(AdversityOnTheDesktop, BringsTheFieldBackFromBehindThisProgram)
{
    speakInto("line");
    openOwnWindow();
    expectInserted();
}

TEST_F(AdversityOnTheDesktop, BringsAHiddenWindowBack)
{
    speakInto("line");
    form.ask("hide window");
    untilUnfocused();
    expectInserted();
}

TEST_F(AdversityOnTheDesktop, TypesNowhereIfTheWindowIsClosed)
{
    speakInto("line");
    form.ask("close window");
    expectFailure(Case::unavailableTarget);
}

TEST_F(AdversityOnTheDesktop, TypesNowhereIfTheProgramIsGone)
{
    speakInto("line");
    form.kill();
    expectFailure(Case::unavailableTarget);
    EXPECT_EQ(lastLogEntry(), "Original destination validation failed: captured application terminated, AX code 0");
}

TEST_F(AdversityOnTheDesktop, TypesNowhereIfTheProgramIsFrozen)
{
    speakInto("line");
    form.freeze();
    expectFailure(Case::unavailableTarget);
    form.thaw();
    EXPECT_EQ(form.ask("read line"), "[]");
}

TEST_F(AdversityOnTheDesktop, TypesNowhereIfTheFieldIsSwitchedOff)
{
    speakInto("line");
    form.ask("disable line");
    expectFailure(Case::unavailableTarget);
    EXPECT_EQ(form.ask("read line"), "[]");
    EXPECT_EQ(lastLogEntry(), "Original destination validation failed: field disabled, AX code 0");
}

TEST_F(AdversityOnTheDesktop, FindsNoFieldInItsOwnWindow)
{
    goTo("line");
    openOwnWindow();
    pressShortcut();
    EXPECT_FALSE(target);
    EXPECT_EQ(failure, Case::noField);
}

TEST_F(AdversityOnTheDesktop, FindsNoFieldWithoutAnyWindow)
{
    goTo("line");
    form.ask("close window");
    loop.turnUntil([this] { return !x11.workspace().frontmostApplication(); });
    pressShortcut();
    EXPECT_FALSE(target);
    EXPECT_EQ(failure, Case::noField);
}

TEST_F(AdversityOnTheDesktop, PastesWithTheLocksOn)
{
    constexpr DesktopLinux::KeySymbol capsLock = 0xffe5;
    type({ capsLock });
    type({ KeySymbols::numLock });
    speakInto("line");
    expectInserted();
    type({ capsLock });
    type({ KeySymbols::numLock });
}

// A user of another script has its letters, and V perhaps on the same key in another arrangement.
TEST_F(AdversityOnTheDesktop, PastesOnAnyKeyboard)
{
    for (const std::string layout : { "ru", "us,ru", "dvorak", "us" }) {
        EXPECT_EQ(std::system(("setxkbmap " + layout).c_str()), 0);
        target.reset();
        speakInto("line");
        insert(layout + "!");
        EXPECT_TRUE(form.ask("read line").ends_with(layout + "!]"));
    }
}

// While it is held, the keys are this program's.
TEST_F(AdversityOnTheDesktop, PastesOnceTheShortcutIsReleased)
{
    goTo("line");
    press({ KeySymbols::alt, KeySymbols::space });
    loop.turnUntil([this] { return target.has_value(); });
    const auto task = startInserting("spoken");
    EXPECT_EQ(serve(form, "read line"), "[]");
    release({ KeySymbols::space, KeySymbols::alt });
    loop.finish(task);
    EXPECT_EQ(form.ask("read line"), "[spoken]");
}

// Programs have lost the focus to the shortcut, and take a moment to notice that they have it again.
TEST_F(AdversityOnTheDesktop, PastesIntoAProgramThatIsBusyWhenTheShortcutIsReleased)
{
    PlatformSupport::HandTurnedClock handTurned;
    TextInsertion byHand { services(), handTurned };
    goTo("line");
    press({ KeySymbols::alt, KeySymbols::space });
    loop.turnUntil([this] { return target.has_value(); });
    const auto work = [&] { return byHand.insert("spoken", target.value(), Clipboard::restored); };
    const auto task = PlatformSupport::startTask(loop.executor(), work);
    loop.turn(); // up to the wait for the keys
    form.freeze();
    release({ KeySymbols::space, KeySymbols::alt });
    loop.turnUntil([&] { return task.isFinished() || handTurned.sleepers() > 0; });
    form.thaw();
    untilFocused("line");
    handTurned.advance(50ms);
    while (!task.isFinished() && serve(form, "read line") == "[]") { }
    handTurned.advance(900ms);
    loop.finish(task);
    EXPECT_EQ(form.ask("read line"), "[spoken]");
}

} // namespace

} // namespace Sorvane
