// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>
#include <PlatformSupport/Suspension.h>

#include <memory>
#include <optional>

namespace DesktopLinux {

// What a coroutine waits for that another program may never do. One thread, the executor's.
class TimedSignal {
public:
    TimedSignal(PlatformSupport::Executor executor, PlatformSupport::Clock& clock);

    // Wakes the coroutine that waits; the next wait() ends at once if none does.
    void give();

    // Whether it was given in time.
    //
    // Errors: CancellationError
    PlatformSupport::Awaitable<bool> wait(PlatformSupport::Clock::Duration limit);

private:
    // Shared with the alarm.
    struct State {
        bool isGiven = false;
        std::optional<PlatformSupport::Resumer> waiter;
    };

    PlatformSupport::Executor executor_;
    PlatformSupport::Clock& clock_;
    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace DesktopLinux
