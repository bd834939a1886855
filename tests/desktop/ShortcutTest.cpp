// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "SessionOnTheDesktop.h"

#include <cstdlib>

namespace Sorvane {

namespace {

using DesktopLinux::KeySymbol;
using DesktopServices::HotKeyEvent;
namespace KeySymbols = DesktopLinux::KeySymbols;

constexpr auto taken = "That shortcut is in use. Choose another shortcut.";

class ShortcutOnTheDesktop : public SessionOnTheDesktop {
protected:
    void openWithMicrophone()
    {
        server.addMicrophone("desk", 48000, 2);
        open();
        untilReady();
        desktop.goTo("line");
    }

    // Counts what the application is told.
    void countPresses()
    {
        desktop.x11.hotKey().setHandler([this](HotKeyEvent event) {
            presses += event == HotKeyEvent::pressed ? 1 : 0;
            controller->handleShortcut(event == HotKeyEvent::pressed);
        });
    }

    void untilPhaseIs(DictationPhase phase)
    {
        desktop.loop.turnUntil([&] { return controller->phase() == phase; });
    }

    // The user arranges the keys in another way.
    void arrangeKeys(const std::string& layout)
    {
        EXPECT_EQ(std::system(("setxkbmap " + layout).c_str()), 0);
        desktop.usersConnection.synchronise();
        desktop.loop.turn();
    }

    xcb_keycode_t key(KeySymbol symbol) const { return desktop.keyboard.keyWith(symbol).value_or(0); }

    int presses = 0;
};

TEST_F(ShortcutOnTheDesktop, BeginsOneDictationHoweverLongItIsHeld)
{
    openWithMicrophone();
    countPresses();
    desktop.press({ KeySymbols::alt, KeySymbols::space });
    desktop.loop.turnUntil([this] { return presses >= 4; }); // the key repeats
    EXPECT_EQ(controller->phase(), DictationPhase::recording);
    desktop.release({ KeySymbols::space, KeySymbols::alt });
    untilCaptured(0.3);
    end();
    expectWordsIn("line");
}

TEST_F(ShortcutOnTheDesktop, EndsAHeldDictationWhateverKeyIsReleasedFirst)
{
    defaults.setString("activationMode", rawValue(ActivationMode::hold));
    openWithMicrophone();
    desktop.press({ KeySymbols::alt, KeySymbols::space });
    untilPhaseIs(DictationPhase::recording);
    untilCaptured(0.3);
    desktop.release({ KeySymbols::alt });
    untilCaptured(0.1);
    EXPECT_EQ(controller->phase(), DictationPhase::recording);
    desktop.release({ KeySymbols::space });
    untilPhaseIs(DictationPhase::idle);
    expectWordsIn("line");
}

TEST_F(ShortcutOnTheDesktop, CanBeAnotherProgramsUntilThatLetsGoOfIt)
{
    const auto alt = std::to_string(desktop.keyboard.modifierBit(KeySymbols::alt));
    const auto space = std::to_string(key(KeySymbols::space));
    ASSERT_EQ(desktop.other.ask("grab " + space + " " + alt), "granted");
    openWithMicrophone();
    EXPECT_FALSE(controller->shortcutRegistered());
    pressShortcut();
    desktop.loop.turn();
    EXPECT_EQ(controller->phase(), DictationPhase::idle);
    controller->setShortcut(Shortcut::optionSpace);
    EXPECT_EQ(controller->status(), taken);
    controller->setShortcut(Shortcut::commandShiftD);
    EXPECT_TRUE(controller->shortcutRegistered());
    desktop.type({ KeySymbols::super, KeySymbols::shift, KeySymbols::d });
    untilPhaseIs(DictationPhase::recording);
    controller->cancel();
    desktop.other.kill();
    while (!controller->shortcutRegistered() || controller->settings().shortcut != Shortcut::optionSpace)
        controller->setShortcut(Shortcut::optionSpace);
    begin();
}

TEST_F(ShortcutOnTheDesktop, CanBeChangedDuringADictation)
{
    openWithMicrophone();
    begin();
    controller->setShortcut(Shortcut::controlOptionSpace);
    pressShortcut();
    untilCaptured(0.3);
    EXPECT_EQ(controller->phase(), DictationPhase::recording);
    desktop.type({ KeySymbols::control, KeySymbols::alt, KeySymbols::space });
    untilPhaseIs(DictationPhase::idle);
    expectWordsIn("line");
}

// On the Dvorak arrangement D is elsewhere.
TEST_F(ShortcutOnTheDesktop, FollowsTheUsersArrangementOfTheKeys)
{
    openWithMicrophone();
    controller->setShortcut(Shortcut::commandShiftD);
    const auto place = key(KeySymbols::d);
    arrangeKeys("dvorak");
    desktop.loop.turnUntil([&] { return key(KeySymbols::d) != place; });
    desktop.type({ KeySymbols::super, KeySymbols::shift, KeySymbols::d });
    untilPhaseIs(DictationPhase::recording);
    arrangeKeys("us");
    desktop.loop.turnUntil([&] { return key(KeySymbols::d) == place; });
    untilCaptured(0.3);
    desktop.type({ KeySymbols::super, KeySymbols::shift, KeySymbols::d });
    untilPhaseIs(DictationPhase::idle);
    expectWordsIn("line");
}

// Two scripts on one keyboard, the second of them in use.
TEST_F(ShortcutOnTheDesktop, WorksInAnyScript)
{
    constexpr KeySymbol nextScript = 0xfe08;
    openWithMicrophone();
    arrangeKeys("us,ru -option grp:caps_toggle");
    desktop.loop.turnUntil([&] { return key(nextScript) != 0; });
    desktop.type({ nextScript });
    expectDictation("line");
    desktop.type({ nextScript });
    arrangeKeys("us -option");
}

} // namespace

} // namespace Sorvane
