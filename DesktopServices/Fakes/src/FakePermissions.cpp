// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakePermissions.h>

#include <utility>

namespace DesktopFakes {

using DesktopServices::AuthorizationStatus;
using PlatformSupport::Awaitable;
using PlatformSupport::Resumer;

void FakePermissions::answerMicrophone(bool isAllowed)
{
    microphone = isAllowed ? AuthorizationStatus::authorized : AuthorizationStatus::denied;
    for (const auto& asker : std::exchange(waiting_, {}))
        asker.resume();
}

Awaitable<bool> FakePermissions::requestMicrophoneAccess()
{
    const auto ask = [this](const Resumer& asker) { waiting_.push_back(asker); };
    if (microphone == AuthorizationStatus::notDetermined)
        co_await PlatformSupport::suspend(ask);
    co_return microphone == AuthorizationStatus::authorized;
}

} // namespace DesktopFakes
