// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Programs/Process.h"
#include "X11/ApplicationIdentity.h"
#include "X11/X11Workspace.h"

#include <DesktopServices/RunningApplication.h>
#include <PlatformSupport/WeakSelf.h>

#include <utility>

namespace DesktopLinux {

// A program with a window. It may outlive its workspace, and is then never activated any more.
class X11Application final : public DesktopServices::RunningApplication {
public:
    X11Application(
        PlatformSupport::WeakReference<X11Workspace> workspace, ProcessRun process, ApplicationIdentity identity)
        : workspace_(std::move(workspace))
        , process_(process)
        , identity_(std::move(identity))
    {
    }

    // A window of it was in front.
    void sawWindow(xcb_window_t window) { latestWindow_ = window; }

    DesktopServices::ProcessIdentifier processIdentifier() const override { return process_.identifier; }
    std::optional<std::string> localizedName() const override { return identity_.name; }
    std::optional<std::string> bundleIdentifier() const override { return identity_.identifier; }
    PasteHabit pasteHabit() const { return identity_.pasteHabit; }
    bool isTerminated() const override { return !isRunning(process_); }
    bool isBuiltOnElectron() const override { return bringsBrowserEngine(process_); }
    void activate() override
    {
        if (auto* const workspace = workspace_.get())
            workspace->activate(process_, latestWindow_);
    }

private:
    PlatformSupport::WeakReference<X11Workspace> workspace_;
    ProcessRun process_;
    ApplicationIdentity identity_;
    xcb_window_t latestWindow_ = XCB_WINDOW_NONE;
};

} // namespace DesktopLinux
