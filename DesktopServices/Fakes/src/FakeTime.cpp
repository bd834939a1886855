// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeTime.h>
#include <PlatformSupport/Task.h>

namespace DesktopFakes {

using PlatformSupport::Awaitable;

void FakeTime::after(Duration duration, std::function<void()> function) const
{
    if (duration == Duration::zero())
        return function();
    const auto wait = [&clock = clock_, duration, function = std::move(function)]() -> Awaitable<void> {
        co_await clock.sleep(duration);
        function();
    };
    PlatformSupport::startDetachedTask(executor_, wait);
}

} // namespace DesktopFakes
