// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "OtherProgram.h"
#include "X11/X11KeyEvents.h"
#include "X11/X11Testing.h"

#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/Task.h>

#include <filesystem>
#include <fstream>

namespace DesktopLinux {

namespace {

namespace fs = std::filesystem;
using DesktopServices::KeyDirection;
using DesktopServices::virtualKeyV;
using PlatformSupport::Awaitable;

class KeyEventsTest : public X11Testing {
protected:
    // The other program has the focus with a window of this class.
    void open(const std::string& windowClass)
    {
        other.ask("window " + windowClass);
        loop.turnUntil([&] { return workspace.frontmostApplication() != nullptr; });
        ASSERT_EQ(workspace.frontmostApplication()->processIdentifier(), other.process());
    }

    void paste(DesktopServices::ProcessIdentifier process)
    {
        for (const auto direction : { KeyDirection::down, KeyDirection::up }) {
            auto event = source->makeEvent(virtualKeyV, direction);
            ASSERT_TRUE(event);
            EXPECT_EQ(event->flags, 0u);
            event->flags = DesktopServices::commandMask;
            source->post(*event, process);
        }
    }

    // What the other program gets when a key with that symbol is pressed under these modifiers.
    std::string keyPress(KeySymbol symbol, std::initializer_list<KeySymbol> modifiers) const
    {
        int state = 0;
        for (const auto modifier : modifiers)
            state |= keyboard.modifierBit(modifier);
        return std::to_string(keyboard.keyWith(symbol).value_or(0)) + " " + std::to_string(state);
    }

    // The last of the keys that it gets for a chord.
    std::string lastOf(int keys)
    {
        std::string last;
        while (keys-- > 0)
            last = other.ask("key");
        return last;
    }

    OtherProgram other;
    PlatformSupport::HandTurnedClock handTurned { loop };
    Keyboard keyboard { connection };
    X11HotKey hotKey { connection, keyboard };
    X11Workspace workspace { connection };
    X11Pasteboard pasteboard { connection, loop.executor(), clock };
    X11KeyEvents keyEvents { keyboard, hotKey, workspace, pasteboard, handTurned };
    std::unique_ptr<DesktopServices::KeyEventSource> source = keyEvents.makePrivateSource();
};

TEST_F(KeyEventsTest, PastesWithControlV)
{
    open("Editor");
    paste(other.process());
    EXPECT_EQ(lastOf(2), keyPress(KeySymbols::v, { KeySymbols::control }));
    EXPECT_FALSE(keyboard.isModifierHeld());
}

TEST_F(KeyEventsTest, PastesIntoATerminalWithShiftToo)
{
    const fs::path folder = fs::path(std::getenv("XDG_DATA_HOME")) / "applications";
    fs::create_directories(folder);
    std::ofstream(folder / "org.example.Console.desktop")
        << "[Desktop "
           "Entry]\nType=Application\nName=Console\nCategories=System;TerminalEmulator;\nStartupWMClass=Console\n";
    open("Console");
    paste(other.process());
    EXPECT_EQ(lastOf(3), keyPress(KeySymbols::v, { KeySymbols::control, KeySymbols::shift }));
}

TEST_F(KeyEventsTest, LendsTheTextToProgramsThatPasteWhatIsSelected)
{
    open("XTerm");
    pasteboard.clearContents();
    ASSERT_TRUE(pasteboard.setString("words", DesktopServices::pasteboardStringType));
    paste(other.process());
    EXPECT_EQ(lastOf(2), keyPress(KeySymbols::insert, { KeySymbols::shift }));
    EXPECT_EQ(serve(other, "paste-primary UTF8_STRING"), "words");
    pasteboard.clearContents();
    EXPECT_EQ(serve(other, "paste-primary UTF8_STRING"), "refused");
}

TEST_F(KeyEventsTest, PressesNothingIfAnotherProgramIsInFront)
{
    open("Editor");
    paste(other.process() + 1);
    keyboard.fakeKey(keyboard.keyWith(KeySymbols::d).value_or(0), true);
    keyboard.fakeKey(keyboard.keyWith(KeySymbols::d).value_or(0), false);
    EXPECT_EQ(other.ask("key"), keyPress(KeySymbols::d, {}));
}

TEST_F(KeyEventsTest, LetsGoOfTheKeysWithItsSource)
{
    open("Editor");
    auto event = source->makeEvent(virtualKeyV, KeyDirection::down);
    event->flags = DesktopServices::commandMask;
    source->post(*event, other.process());
    EXPECT_TRUE(keyboard.isModifierHeld());
    source.reset();
    EXPECT_FALSE(keyboard.isModifierHeld());
}

TEST_F(KeyEventsTest, MakesNoOtherKey)
{
    EXPECT_FALSE(source->makeEvent(8, KeyDirection::down));
}

TEST_F(KeyEventsTest, WaitsUntilTheUserHasLetGoOfTheModifiers)
{
    const auto alt = keyboard.keyWith(KeySymbols::alt).value_or(0);
    const auto wait = [&] { return source->untilModifiersAreUp(); };
    keyboard.fakeKey(alt, true);
    const auto task = PlatformSupport::startTask(loop.executor(), wait);
    loop.turn();
    handTurned.advance(std::chrono::milliseconds(500));
    EXPECT_FALSE(task.isFinished());
    keyboard.fakeKey(alt, false);
    handTurned.advance(std::chrono::milliseconds(10));
    EXPECT_TRUE(loop.finish(task));
}

// Until then the keyboard is this program's, and so would the paste key be.
TEST_F(KeyEventsTest, WaitsUntilTheShortcutIsReleased)
{
    const auto space = keyboard.keyWith(KeySymbols::space).value_or(0);
    const auto alt = keyboard.keyWith(KeySymbols::alt).value_or(0);
    const auto wait = [&] { return source->untilModifiersAreUp(); };
    ASSERT_TRUE(hotKey.registerChord({ 49, DesktopServices::HotKeyModifier::option }));
    keyboard.fakeKey(alt, true);
    keyboard.fakeKey(space, true);
    keyboard.fakeKey(alt, false);
    catchUp();
    const auto task = PlatformSupport::startTask(loop.executor(), wait);
    loop.turn();
    handTurned.advance(std::chrono::milliseconds(500));
    EXPECT_FALSE(task.isFinished());
    keyboard.fakeKey(space, false);
    catchUp();
    handTurned.advance(std::chrono::milliseconds(10));
    EXPECT_TRUE(loop.finish(task));
}

TEST_F(KeyEventsTest, GivesUpOnModifiersThatStayDown)
{
    const auto shift = keyboard.keyWith(KeySymbols::shift).value_or(0);
    const auto wait = [&] { return source->untilModifiersAreUp(); };
    keyboard.fakeKey(shift, true);
    const auto task = PlatformSupport::startTask(loop.executor(), wait);
    loop.turn();
    handTurned.advance(std::chrono::seconds(2));
    EXPECT_FALSE(loop.finish(task));
    keyboard.fakeKey(shift, false);
}

TEST_F(KeyEventsTest, IsNotHeldUpByLocksOrOrdinaryKeys)
{
    for (const auto symbol : { KeySymbols::numLock, KeySymbols::d }) {
        const auto key = keyboard.keyWith(symbol).value_or(0);
        keyboard.fakeKey(key, true);
        EXPECT_FALSE(keyboard.isModifierHeld());
        keyboard.fakeKey(key, false);
    }
    keyboard.fakeKey(keyboard.keyWith(KeySymbols::numLock).value_or(0), true);
    keyboard.fakeKey(keyboard.keyWith(KeySymbols::numLock).value_or(0), false);
}

} // namespace

} // namespace DesktopLinux
