// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopLinux/WhileWaiting.h>
#include <DesktopServices/Accessibility.h>
#include <PlatformSupport/Awaitable.h>

#include <functional>
#include <memory>

namespace DesktopLinux {

// The elements of other programs, as they tell of them on the accessibility bus of the session.
//
// The bus is looked for at once, and known a little later; elements of it are readable from then on. Which programs
// tell of themselves depends on them: most do so only once accessibility is switched on, some only if it was before
// they started.
//
// Main thread only. Elements may outlive it, and are gone then.
class AccessibilityBus {
public:
    // `isShortcutHeld` says whether the shortcut's key is down: for as long as it is, programs deny that anything of
    // theirs has the focus, and what had it last counts.
    AccessibilityBus(const PlatformSupport::Executor& mainThread, std::function<bool()> isShortcutHeld,
        WhileWaiting whileWaiting = {});
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;
    ~AccessibilityBus();

    DesktopServices::Accessibility& accessibility();

    // Whether the bus is there, and accessibility is switched on. Waits for nobody.
    bool isEnabled() const;

    // Switches it on for the whole session, for the programs that wait for a screen reader too. Seen later by
    // isEnabled().
    void enable();

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace DesktopLinux
