// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "X11/Keyboard.h"
#include "X11/X11HotKey.h"
#include "X11/X11Pasteboard.h"
#include "X11/X11Workspace.h"

#include <DesktopServices/KeyEvents.h>
#include <PlatformSupport/Clock.h>

namespace DesktopLinux {

// The paste key, pressed by the X server itself: programs do not tell it from the user's. It goes to whatever has the
// focus, and is therefore pressed only while the window in front belongs to the process that it is meant for.
//
// Main thread only.
class X11KeyEvents final : public DesktopServices::KeyEvents {
public:
    X11KeyEvents(Keyboard& keyboard, const X11HotKey& hotKey, const X11Workspace& workspace, X11Pasteboard& pasteboard,
        PlatformSupport::Clock& clock)
        : keyboard_(keyboard)
        , hotKey_(hotKey)
        , workspace_(workspace)
        , pasteboard_(pasteboard)
        , clock_(clock)
    {
    }

    std::unique_ptr<DesktopServices::KeyEventSource> makePrivateSource() override;

private:
    class Source;

    Keyboard& keyboard_;
    const X11HotKey& hotKey_;
    const X11Workspace& workspace_;
    X11Pasteboard& pasteboard_;
    PlatformSupport::Clock& clock_;
};

} // namespace DesktopLinux
