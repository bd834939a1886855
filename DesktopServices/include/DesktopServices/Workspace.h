// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/RunningApplication.h>

#include <functional>
#include <memory>

namespace DesktopServices {

// Which application the user is working in.
//
// Main thread only; nothing here waits for another program.
class Workspace {
public:
    using ActivationHandler = std::function<void(const std::shared_ptr<RunningApplication>&)>;
    using Subscription = std::shared_ptr<void>; // ends the observation when it goes

    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    // Null when none is in front. The same application is always the same object.
    virtual std::shared_ptr<RunningApplication> frontmostApplication() const = 0;

    // Called for each application that comes to the front from now on, this one included.
    [[nodiscard]] virtual Subscription observeActivation(ActivationHandler handler) = 0;

    // The process that this program runs in.
    virtual ProcessIdentifier ownProcessIdentifier() const = 0;
};

} // namespace DesktopServices
