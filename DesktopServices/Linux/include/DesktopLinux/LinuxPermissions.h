// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopLinux/AccessibilityBus.h>
#include <DesktopLinux/Sound.h>
#include <DesktopServices/Permissions.h>

namespace DesktopLinux {

// This desktop asks the user for neither: a program may use the microphones that there are, and read the elements of
// others once accessibility is switched on.
//
// Both services outlive it.
class LinuxPermissions final : public DesktopServices::Permissions {
public:
    LinuxPermissions(const Sound& sound, AccessibilityBus& accessibility)
        : sound_(sound)
        , accessibility_(accessibility)
    {
    }

    DesktopServices::AuthorizationStatus microphoneStatus() const override { return sound_.microphoneStatus(); }
    PlatformSupport::Awaitable<bool> requestMicrophoneAccess() override;
    bool isAccessibilityTrusted() const override { return accessibility_.isEnabled(); }
    void promptForAccessibility() override { accessibility_.enable(); }

private:
    const Sound& sound_;
    AccessibilityBus& accessibility_;
};

} // namespace DesktopLinux
