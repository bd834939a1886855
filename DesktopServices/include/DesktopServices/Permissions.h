// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>

namespace DesktopServices {

// The numbers are the platform's.
enum class AuthorizationStatus : int { notDetermined = 0, restricted = 1, denied = 2, authorized = 3 };

// What the user lets this program do.
//
// Main thread only. What is read here is known at once: nothing waits for another program.
class Permissions {
public:
    Permissions() = default;
    Permissions(const Permissions&) = delete;
    Permissions& operator=(const Permissions&) = delete;
    virtual ~Permissions() = default;

    virtual AuthorizationStatus microphoneStatus() const = 0;

    // Asks the user for the microphone where that is still open, and gives the answer.
    virtual PlatformSupport::Awaitable<bool> requestMicrophoneAccess() = 0;

    // Whether the elements of other programs may be read and keys be sent to them.
    virtual bool isAccessibilityTrusted() const = 0;

    // Asks the user for it. The answer is seen later, by isAccessibilityTrusted().
    virtual void promptForAccessibility() = 0;
};

} // namespace DesktopServices
