// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/X11Workspace.h"
#include "X11/XConnection.h"

#include <DesktopLinux/X11Session.h>

#include <utility>

namespace DesktopLinux {

NoDisplayError::NoDisplayError()
    : std::runtime_error("There is no X display.")
{
}

struct X11Session::Parts {
    explicit Parts(PlatformSupport::Executor mainThread)
        : connection(std::move(mainThread))
    {
    }

    XConnection connection;
    X11Workspace workspace { connection };
};

X11Session::X11Session(PlatformSupport::Executor mainThread)
    : parts_(std::make_unique<Parts>(std::move(mainThread)))
{
}

X11Session::~X11Session() = default;

DesktopServices::Workspace& X11Session::workspace()
{
    return parts_->workspace;
}

} // namespace DesktopLinux
