// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/AccessibilityTesting.h"

#include <PlatformSupport/Environment.h>

#include <cstdlib>

namespace DesktopLinux {

namespace {

using DesktopServices::AccessibilityElement;
using DesktopServices::AccessibilityError;
namespace Attribute = DesktopServices::AccessibilityAttribute;
using namespace std::chrono_literals;

class FocusTest : public AccessibilityTesting { };

TEST_F(FocusTest, IsFoundInAProgramThatHadItBefore)
{
    const auto line = focus(form, "line");
    AccessibilityBus later(loop.executor(), [] { return false; });
    while (!later.isEnabled())
        loop.turn();
    const auto program = later.accessibility().applicationElement(form.process());
    const auto found = program.read(Attribute::focusedElement, 5s).as<AccessibilityElement>();
    ASSERT_TRUE(found);
    EXPECT_EQ(*found, line);
}

TEST_F(FocusTest, IsNotInAProgramBehindAnother)
{
    focus(form, "line");
    OtherProgram front;
    bringForward(front);
    EXPECT_EQ(application(form).read(Attribute::focusedElement).error, AccessibilityError::noValue);
    EXPECT_FALSE(application(form).read(Attribute::focusedWindow).succeeded());
}

// Programs deny the focus then: the keyboard is the shortcut's.
TEST_F(FocusTest, IsWhereItWasLastWhileTheShortcutIsHeld)
{
    const auto line = focus(form, "line");
    OtherProgram front;
    bringForward(front);
    isShortcutHeld = true;
    EXPECT_EQ(focused(form), line);
    isShortcutHeld = false;
    EXPECT_FALSE(focused(form));
}

TEST_F(FocusTest, IsKnownAtTheFirstPressIfItWasThereBefore)
{
    const auto line = focus(form, "line");
    AccessibilityBus later(loop.executor(), [this] { return isShortcutHeld; });
    while (!later.isEnabled())
        loop.turn();
    OtherProgram front;
    bringForward(front);
    isShortcutHeld = true;
    const auto program = later.accessibility().applicationElement(form.process());
    EXPECT_EQ(program.read(Attribute::focusedElement).as<AccessibilityElement>(), line);
}

TEST_F(FocusTest, IsKnownForEachProgram)
{
    const auto line = focus(form, "line");
    OtherProgram second(FORM_PROGRAM);
    const auto page = focus(second, "page"); // its window is in front now
    isShortcutHeld = true;
    EXPECT_EQ(focused(form), line);
    EXPECT_EQ(focused(second), page);
    EXPECT_FALSE(line == page);
}

TEST_F(FocusTest, OfAProgramWithoutElementsIsNothing)
{
    OtherProgram mute;
    mute.ask("window Mute");
    EXPECT_EQ(application(mute).read(Attribute::focusedElement, 5s).error, AccessibilityError::noValue);
}

TEST_F(FocusTest, OfAFrozenProgramIsNotWaitedFor)
{
    focus(form, "line");
    form.freeze();
    EXPECT_FALSE(application(form).read(Attribute::focusedElement, 20ms).succeeded());
}

class AccessibilitySwitchTest : public AccessibilityTesting {
protected:
    ~AccessibilitySwitchTest() override { turn("true"); }

    static void turn(const std::string& position)
    {
        for (const std::string property : { "IsEnabled", "ScreenReaderEnabled" }) {
            const auto command = "dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus "
                                 "org.freedesktop.DBus.Properties.Set string:org.a11y.Status string:"
                + property + " variant:boolean:" + position + " >/dev/null";
            EXPECT_EQ(std::system(command.c_str()), 0);
        }
    }

    void turnOff()
    {
        turn("false");
        while (bus.isEnabled())
            loop.turn();
    }
};

TEST_F(AccessibilitySwitchTest, IsTurnedOnForAllPrograms)
{
    turnOff();
    while (application(form).read(Attribute::manualAccessibility).as<bool>() != false)
        loop.turn();
    bus.enable();
    while (!bus.isEnabled() || application(form).read(Attribute::manualAccessibility).as<bool>() != true)
        loop.turn();
}

TEST_F(AccessibilitySwitchTest, IsTurnedOnForAProgramThatWaitsForAScreenReader)
{
    turnOff();
    EXPECT_EQ(application(form).write(Attribute::manualAccessibility, true), AccessibilityError::success);
    while (!bus.isEnabled() || application(form).read(Attribute::manualAccessibility).as<bool>() != true)
        loop.turn();
}

TEST(AccessibilityWithoutASession, IsOffAndHasNoElements)
{
    const std::string address = PlatformSupport::environmentVariable("DBUS_SESSION_BUS_ADDRESS").value_or("");
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere", 1);
    PlatformSupport::HandTurnedLoop loop;
    AccessibilityBus bus(loop.executor(), [] { return false; });
    bus.enable();
    EXPECT_FALSE(bus.isEnabled());
    EXPECT_EQ(bus.accessibility().applicationElement(1).read(Attribute::focusedElement).error,
        AccessibilityError::apiDisabled);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
}

} // namespace

} // namespace DesktopLinux
