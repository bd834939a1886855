// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>

#include <chrono>

namespace PlatformSupport {

// Time as the program sees it. Whoever waits or measures is given a clock, so that a test can turn it by hand.
//
// Any thread.
class Clock {
public:
    using Duration = std::chrono::nanoseconds;
    using Instant = std::chrono::time_point<std::chrono::steady_clock, Duration>;
    using Date = std::chrono::time_point<std::chrono::system_clock, Duration>;

    virtual ~Clock() = default;

    // For measuring: never goes back, and tells nothing by itself.
    virtual Instant now() const = 0;

    // The date and time of day (UTC), which the user can change.
    virtual Date date() const = 0;

    // Waits, at least until the next turn of the task's executor.
    //
    // Errors: CancellationError, at once when the task is cancelled
    virtual Awaitable<void> sleep(Duration duration) = 0;
};

} // namespace PlatformSupport
