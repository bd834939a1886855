// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopLinux/AccessibilityBus.h>
#include <DesktopLinux/JournalLog.h>
#include <DesktopLinux/LinuxPermissions.h>
#include <DesktopLinux/ProgramLaunching.h>
#include <DesktopLinux/Sound.h>
#include <DesktopLinux/X11Session.h>
#include <DesktopServices/Desktop.h>

namespace Sorvane {

// This desktop's services, put together.
//
// Main thread, which is that of the executor.
struct LinuxDesktop {
    // Errors: NoDisplayError
    LinuxDesktop(const PlatformSupport::Executor& mainThread, PlatformSupport::Clock& clock)
        : x11(mainThread, clock)
        , accessibility(
              mainThread, [this] { return x11.isShortcutHeld(); }, x11.whileWaiting())
    {
    }

    DesktopServices::Desktop services()
    {
        return { accessibility.accessibility(), x11.workspace(), x11.pasteboard(), x11.keyEvents(), x11.hotKey(),
            permissions, launching, log };
    }

    // In the order in which one needs the other.
    DesktopLinux::X11Session x11;
    DesktopLinux::AccessibilityBus accessibility;
    DesktopLinux::Sound sound;
    DesktopLinux::LinuxPermissions permissions { sound, accessibility };
    DesktopLinux::ProgramLaunching launching;
    DesktopLinux::JournalLog log;
};

} // namespace Sorvane
