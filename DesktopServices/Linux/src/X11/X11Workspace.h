// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Programs/DesktopEntries.h"
#include "Programs/Process.h"
#include "X11/XConnection.h"

#include <DesktopServices/Workspace.h>

#include <map>
#include <memory>
#include <vector>

namespace DesktopLinux {

class X11Application;

// The applications behind the windows, as the window manager tells of them.
//
// Main thread only.
class X11Workspace final : public DesktopServices::Workspace {
public:
    explicit X11Workspace(XConnection& connection);
    ~X11Workspace() override;

    std::shared_ptr<DesktopServices::RunningApplication> frontmostApplication() const override;
    Subscription observeActivation(ActivationHandler handler) override;
    DesktopServices::ProcessIdentifier ownProcessIdentifier() const override;

    std::shared_ptr<X11Application> frontmost() const;

    // Asks the window manager to bring the program's window to the front that was there last.
    void activate(const ProcessRun& process, xcb_window_t latestWindow);

private:
    std::shared_ptr<X11Application> application(const ProcessRun& process, xcb_window_t window) const;
    xcb_window_t topmostWindow(const ProcessRun& process);
    void activeWindowChanged();

    XConnection& connection_;
    mutable DesktopEntries entries_ = DesktopEntries::fromEnvironment();
    mutable std::map<ProcessRun, std::shared_ptr<X11Application>> applications_; // those that run
    std::shared_ptr<X11Application> lastInFront_;
    std::vector<std::weak_ptr<ActivationHandler>> handlers_;
    XConnection::Subscription events_;
    PlatformSupport::WeakSelf<X11Workspace> self_ { this };
};

} // namespace DesktopLinux
