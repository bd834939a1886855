// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>

#include <functional>
#include <memory>

namespace DesktopLinux {

// How a second start of this program, and the desktop, bring the running one forward: the freedesktop.org interface for
// applications on the session bus, org.freedesktop.Application. Without a session bus nobody finds it.
//
// Main thread only.
class ApplicationActivation {
public:
    // `activated` is called whenever somebody asks for this program.
    ApplicationActivation(const PlatformSupport::Executor& mainThread, std::function<void()> activated);
    ApplicationActivation(const ApplicationActivation&) = delete;
    ApplicationActivation& operator=(const ApplicationActivation&) = delete;
    ~ApplicationActivation();

    // Asks the program that runs already, waiting for its answer no longer than two seconds. False if there is none.
    static bool activateRunning();

private:
    struct Parts;
    std::unique_ptr<Parts> parts_; // null without a session bus
};

} // namespace DesktopLinux
