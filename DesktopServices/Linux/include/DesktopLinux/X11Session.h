// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopLinux/WhileWaiting.h>
#include <DesktopServices/HotKey.h>
#include <DesktopServices/KeyEvents.h>
#include <DesktopServices/Pasteboard.h>
#include <DesktopServices/Workspace.h>
#include <PlatformSupport/Clock.h>

#include <memory>
#include <stdexcept>

namespace DesktopLinux {

// $DISPLAY names no display that can be reached.
class NoDisplayError : public std::runtime_error {
public:
    NoDisplayError();
};

// What a session under X11 offers: its windows, keys and clipboard, over one connection to the display that $DISPLAY
// names.
//
// Main thread only, which is the thread of the executor. Its services are valid as long as it is.
class X11Session {
public:
    // Errors: NoDisplayError
    X11Session(const PlatformSupport::Executor& mainThread, PlatformSupport::Clock& clock);
    X11Session(const X11Session&) = delete;
    X11Session& operator=(const X11Session&) = delete;
    ~X11Session();

    DesktopServices::Workspace& workspace();
    DesktopServices::HotKey& hotKey();
    DesktopServices::KeyEvents& keyEvents();
    DesktopServices::Pasteboard& pasteboard();

    // Hands over what is on the clipboard: there are programs that answer nobody until they have it.
    WhileWaiting whileWaiting();

    // For whoever has to know it before there is an executor.
    //
    // Errors: NoDisplayError
    static void requireDisplay();

    // Whether the key of the chord in force is down.
    bool isShortcutHeld() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace DesktopLinux
