// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "OtherProgram.h"
#include "X11/Keyboard.h"

#include <DesktopFakes/FakeDiagnosticLog.h>
#include <DesktopLinux/AccessibilityBus.h>
#include <DesktopLinux/LinuxPermissions.h>
#include <DesktopLinux/ProgramLaunching.h>
#include <DesktopLinux/Sound.h>
#include <DesktopLinux/X11Session.h>
#include <DesktopServices/Desktop.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/SystemClock.h>

#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>

namespace Sorvane {

// The services of a real desktop that nobody sees, a user at its keyboard, and two other programs: a form to write
// into, and one that does as it is told.
class RealDesktop {
public:
    using OtherProgram = DesktopLinux::OtherProgram;
    using Keys = std::initializer_list<DesktopLinux::KeySymbol>;

    explicit RealDesktop(const std::filesystem::path& program = FORM_PROGRAM)
        : form(program)
    {
    }

    DesktopServices::Desktop services();

    void untilAccessible();

    // The user goes to a field of the form; both wait until all the desktop knows.
    void goTo(const std::string& field);
    void untilFocused(const std::string& field);
    void untilFocusIsDescribedAs(const std::string& description);

    // Until nothing in the form has the focus.
    void untilUnfocused();

    bool isInFront(const OtherProgram& program);

    void press(Keys keys);
    void release(Keys keys); // in this order
    void type(Keys keys);

    // What another program answers that asks this one meanwhile.
    std::string serve(OtherProgram& program, const std::string& command);

    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::SystemClock clock;
    DesktopLinux::X11Session x11 { loop.executor(), clock };
    DesktopLinux::AccessibilityBus bus { loop.executor(), [this] { return x11.isShortcutHeld(); }, x11.whileWaiting() };
    DesktopLinux::Sound sound;
    DesktopLinux::LinuxPermissions permissions { sound, bus };
    DesktopLinux::ProgramLaunching launching;
    DesktopFakes::FakeDiagnosticLog log;

    DesktopLinux::XConnection usersConnection { loop.executor() };
    DesktopLinux::Keyboard keyboard { usersConnection };
    OtherProgram form;
    OtherProgram other;

private:
    std::optional<std::string> descriptionOfFocus();
};

} // namespace Sorvane
