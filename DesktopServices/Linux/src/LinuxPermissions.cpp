// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopLinux/LinuxPermissions.h>

namespace DesktopLinux {

PlatformSupport::Awaitable<bool> LinuxPermissions::requestMicrophoneAccess()
{
    co_return co_await sound_.determineMicrophoneStatus() == DesktopServices::AuthorizationStatus::authorized;
}

} // namespace DesktopLinux
