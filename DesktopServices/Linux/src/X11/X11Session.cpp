// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/Keyboard.h"
#include "X11/X11HotKey.h"
#include "X11/X11KeyEvents.h"
#include "X11/X11Pasteboard.h"
#include "X11/X11Workspace.h"
#include "X11/XConnection.h"

#include <DesktopLinux/X11Session.h>

namespace DesktopLinux {

NoDisplayError::NoDisplayError()
    : std::runtime_error("There is no X display.")
{
}

struct X11Session::Parts {
    Parts(const PlatformSupport::Executor& mainThread, PlatformSupport::Clock& clock)
        : connection(mainThread)
        , pasteboard(connection, mainThread, clock)
        , keyEvents(keyboard, hotKey, workspace, pasteboard, clock)
    {
    }

    XConnection connection;
    X11Workspace workspace { connection };
    Keyboard keyboard { connection };
    X11HotKey hotKey { connection, keyboard };
    X11Pasteboard pasteboard;
    X11KeyEvents keyEvents;
};

X11Session::X11Session(const PlatformSupport::Executor& mainThread, PlatformSupport::Clock& clock)
    : parts_(std::make_unique<Parts>(mainThread, clock))
{
}

X11Session::~X11Session() = default;

void X11Session::requireDisplay()
{
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool isReachable = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    if (!isReachable)
        throw NoDisplayError();
}

DesktopServices::Workspace& X11Session::workspace()
{
    return parts_->workspace;
}

DesktopServices::HotKey& X11Session::hotKey()
{
    return parts_->hotKey;
}

WhileWaiting X11Session::whileWaiting()
{
    auto& connection = parts_->connection;
    return { xcb_get_file_descriptor(connection.get()), [&connection] { connection.handOutUrgent(); } };
}

bool X11Session::isShortcutHeld() const
{
    return parts_->hotKey.isHeld();
}

DesktopServices::KeyEvents& X11Session::keyEvents()
{
    return parts_->keyEvents;
}

DesktopServices::Pasteboard& X11Session::pasteboard()
{
    return parts_->pasteboard;
}

} // namespace DesktopLinux
