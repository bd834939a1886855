// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "OtherProgram.h"

#include <DesktopLinux/AccessibilityBus.h>
#include <DesktopServices/AccessibilityNames.h>
#include <PlatformSupport/HandTurnedLoop.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace DesktopLinux {

// A test with this program's way to the elements of others, and a program with a form.
class AccessibilityTesting : public testing::Test {
protected:
    explicit AccessibilityTesting(const std::filesystem::path& program = FORM_PROGRAM)
        : form(program)
    {
        while (!bus.isEnabled())
            loop.turn();
    }

    DesktopServices::AccessibilityElement application(const OtherProgram& program)
    {
        return bus.accessibility().applicationElement(program.process());
    }

    std::optional<DesktopServices::AccessibilityElement> focused(const OtherProgram& program)
    {
        loop.turn();
        return application(program)
            .read(DesktopServices::AccessibilityAttribute::focusedElement)
            .as<DesktopServices::AccessibilityElement>();
    }

    // The program gives its focus to the field; waits until it tells so.
    DesktopServices::AccessibilityElement focus(OtherProgram& program, const std::string& field)
    {
        EXPECT_EQ(program.ask("focus " + field), "done");
        while (true) {
            const auto element = focused(program);
            const auto description = "A " + field + " for tests";
            if (element && text(*element, DesktopServices::AccessibilityAttribute::description) == description)
                return *element;
        }
    }

    // The other program comes to the front; waits until the form has lost the focus.
    void bringForward(OtherProgram& other)
    {
        other.ask("window Front");
        while (focused(form)) { }
    }

    static std::string text(const DesktopServices::AccessibilityElement& element, std::string_view attribute)
    {
        return element.read(attribute).as<std::string>().value_or("none");
    }

    PlatformSupport::HandTurnedLoop loop;
    bool isShortcutHeld = false;
    AccessibilityBus bus { loop.executor(), [this] { return isShortcutHeld; } };
    OtherProgram form;
};

} // namespace DesktopLinux
