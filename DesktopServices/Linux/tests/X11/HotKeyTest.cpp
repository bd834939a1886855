// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "OtherProgram.h"
#include "X11/X11HotKey.h"
#include "X11/X11Testing.h"

#include <algorithm>
#include <vector>

namespace DesktopLinux {

namespace {

using DesktopServices::HotKeyEvent;
using DesktopServices::KeyChord;
namespace HotKeyModifier = DesktopServices::HotKeyModifier;

constexpr KeyChord optionSpace { 49, HotKeyModifier::option };
constexpr KeyChord controlOptionSpace { 49, HotKeyModifier::control | HotKeyModifier::option };
constexpr KeyChord commandShiftD { 2, HotKeyModifier::command | HotKeyModifier::shift };

class HotKeyTest : public X11Testing {
protected:
    HotKeyTest()
    {
        hotKey.setHandler([this](HotKeyEvent event) { events.push_back(event); });
    }

    xcb_keycode_t key(KeySymbol symbol) const { return keyboard.keyWith(symbol).value_or(0); }

    void press(std::initializer_list<KeySymbol> symbols)
    {
        for (const auto symbol : symbols)
            keyboard.fakeKey(key(symbol), true);
    }
    void release(std::initializer_list<KeySymbol> symbols)
    {
        for (const auto symbol : symbols)
            keyboard.fakeKey(key(symbol), false);
    }
    void type(std::initializer_list<KeySymbol> symbols)
    {
        press(symbols);
        release(symbols);
    }

    Keyboard keyboard { connection };
    X11HotKey hotKey { connection, keyboard };
    std::vector<HotKeyEvent> events;

    const std::vector<HotKeyEvent> pressedAndReleased { HotKeyEvent::pressed, HotKeyEvent::released };
};

TEST_F(HotKeyTest, TellsPressAndRelease)
{
    ASSERT_TRUE(hotKey.registerChord(optionSpace));
    press({ KeySymbols::alt, KeySymbols::space });
    loop.turnUntil([&] { return events.size() == 1; });
    release({ KeySymbols::space, KeySymbols::alt });
    loop.turnUntil([&] { return events.size() == 2; });
    EXPECT_EQ(events, pressedAndReleased);
}

TEST_F(HotKeyTest, KnowsTheReleaseWhenTheModifierWasReleasedFirst)
{
    ASSERT_TRUE(hotKey.registerChord(optionSpace));
    press({ KeySymbols::alt, KeySymbols::space });
    release({ KeySymbols::alt, KeySymbols::space });
    catchUp();
    EXPECT_EQ(events, pressedAndReleased);
}

TEST_F(HotKeyTest, TakesEachOfTheChords)
{
    ASSERT_TRUE(hotKey.registerChord(controlOptionSpace));
    type({ KeySymbols::alt, KeySymbols::space });
    catchUp();
    EXPECT_TRUE(events.empty());
    type({ KeySymbols::control, KeySymbols::alt, KeySymbols::space });
    catchUp();
    EXPECT_EQ(events, pressedAndReleased);

    ASSERT_TRUE(hotKey.registerChord(commandShiftD));
    type({ KeySymbols::control, KeySymbols::alt, KeySymbols::space });
    catchUp();
    EXPECT_EQ(events, pressedAndReleased);
    type({ KeySymbols::super, KeySymbols::shift, KeySymbols::d });
    catchUp();
    EXPECT_EQ(events.size(), 4u);
}

TEST_F(HotKeyTest, RepeatsWhileHeldAsPressesAlone)
{
    ASSERT_TRUE(hotKey.registerChord(optionSpace));
    press({ KeySymbols::alt, KeySymbols::space });
    loop.turnUntil([&] { return events.size() == 4; });
    release({ KeySymbols::space, KeySymbols::alt });
    loop.turnUntil([&] { return events.back() == HotKeyEvent::released; });
    EXPECT_EQ(std::count(events.begin(), events.end(), HotKeyEvent::released), 1);
}

TEST_F(HotKeyTest, WorksWhateverLocksAreOn)
{
    constexpr KeySymbol capsLock = 0xffe5;
    ASSERT_TRUE(hotKey.registerChord(optionSpace));
    for (const auto& locks : { std::vector { capsLock }, { KeySymbols::numLock }, { capsLock, KeySymbols::numLock } }) {
        events.clear();
        for (const auto lock : locks)
            type({ lock });
        type({ KeySymbols::alt, KeySymbols::space });
        for (const auto lock : locks)
            type({ lock });
        catchUp();
        EXPECT_EQ(events, pressedAndReleased);
    }
}

TEST_F(HotKeyTest, IsNotRegisteredIfAnotherProgramHoldsTheChord)
{
    OtherProgram rival;
    const auto alt = std::to_string(keyboard.modifierBit(KeySymbols::alt));
    ASSERT_EQ(rival.ask("grab " + std::to_string(key(KeySymbols::space)) + " " + alt), "granted");
    EXPECT_FALSE(hotKey.registerChord(optionSpace));
    type({ KeySymbols::alt, KeySymbols::space });
    catchUp();
    EXPECT_TRUE(events.empty());
    rival.kill();
    while (!hotKey.registerChord(optionSpace)) { }
}

// With Num Lock on it would be the rival's.
TEST_F(HotKeyTest, IsNotRegisteredIfAnotherProgramHoldsTheChordUnderALock)
{
    OtherProgram rival;
    const auto space = std::to_string(key(KeySymbols::space));
    const auto alt = keyboard.modifierBit(KeySymbols::alt);
    const auto numLock = keyboard.modifierBit(KeySymbols::numLock);
    ASSERT_NE(numLock, 0);
    ASSERT_EQ(rival.ask("grab " + space + " " + std::to_string(alt | numLock)), "granted");
    EXPECT_FALSE(hotKey.registerChord(optionSpace));
    EXPECT_EQ(rival.ask("grab " + space + " " + std::to_string(alt)), "granted"); // nothing of it is left
}

TEST_F(HotKeyTest, LeavesNoneInForceWhenAnotherOneIsTaken)
{
    OtherProgram rival;
    const auto states
        = std::to_string(keyboard.modifierBit(KeySymbols::alt) | keyboard.modifierBit(KeySymbols::control));
    ASSERT_EQ(rival.ask("grab " + std::to_string(key(KeySymbols::space)) + " " + states), "granted");
    ASSERT_TRUE(hotKey.registerChord(optionSpace));
    EXPECT_FALSE(hotKey.registerChord(controlOptionSpace));
    type({ KeySymbols::alt, KeySymbols::space });
    catchUp();
    EXPECT_TRUE(events.empty());
}

// Whoever counts on a release for each press is not let down.
TEST_F(HotKeyTest, TellsTheReleaseOfAChordThatWasChangedWhileItWasHeld)
{
    ASSERT_TRUE(hotKey.registerChord(optionSpace));
    press({ KeySymbols::alt, KeySymbols::space });
    catchUp();
    ASSERT_TRUE(hotKey.registerChord(commandShiftD));
    EXPECT_TRUE(hotKey.isHeld());
    release({ KeySymbols::space, KeySymbols::alt });
    catchUp();
    EXPECT_EQ(events, pressedAndReleased);
    EXPECT_FALSE(hotKey.isHeld());
    type({ KeySymbols::super, KeySymbols::shift, KeySymbols::d });
    catchUp();
    EXPECT_EQ(events.size(), 4u);
}

TEST_F(HotKeyTest, GivesTheChordBack)
{
    OtherProgram rival;
    const auto grab = "grab " + std::to_string(key(KeySymbols::space)) + " "
        + std::to_string(keyboard.modifierBit(KeySymbols::alt));
    ASSERT_TRUE(hotKey.registerChord(optionSpace));
    EXPECT_EQ(rival.ask(grab), "refused");
    hotKey.unregister();
    EXPECT_EQ(rival.ask(grab), "granted");
}

TEST_F(HotKeyTest, RefusesAKeyThatIsNotOnTheList)
{
    EXPECT_FALSE(hotKey.registerChord({ 12345, HotKeyModifier::option }));
}

TEST_F(HotKeyTest, FollowsTheKeyToAnotherPlace)
{
    ASSERT_TRUE(hotKey.registerChord(optionSpace));
    const auto oldKey = key(KeySymbols::space);
    const auto newKey = key(KeySymbols::insert);
    const auto write = [&](xcb_keycode_t place, KeySymbol symbol) {
        xcb_change_keyboard_mapping(connection.get(), 1, place, 1, &symbol);
        catchUp();
    };
    write(oldKey, KeySymbols::insert);
    write(newKey, KeySymbols::space);
    ASSERT_EQ(key(KeySymbols::space), newKey);
    type({ KeySymbols::alt, KeySymbols::space });
    catchUp();
    EXPECT_EQ(events, pressedAndReleased);
    write(oldKey, KeySymbols::space);
    write(newKey, KeySymbols::insert);
    type({ KeySymbols::alt, KeySymbols::space });
    catchUp();
    EXPECT_EQ(events.size(), 4u);
}

TEST_F(HotKeyTest, LetsItsHandlerChangeEverything)
{
    ASSERT_TRUE(hotKey.registerChord(optionSpace));
    int calls = 0;
    hotKey.setHandler([&](HotKeyEvent) {
        ++calls;
        hotKey.setHandler({});
        hotKey.unregister();
    });
    type({ KeySymbols::alt, KeySymbols::space });
    catchUp();
    EXPECT_EQ(calls, 1);
}

} // namespace

} // namespace DesktopLinux
