// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "SleeperQueue.h"

#include <PlatformSupport/SystemClock.h>

#include <algorithm>

namespace PlatformSupport {

namespace {

// Long enough for any purpose, and no deadline overflows.
constexpr Clock::Duration longestSleep = std::chrono::hours(24 * 365);

} // namespace

SystemClock::SystemClock()
    : sleepers_(std::make_shared<SleeperQueue>())
    , alarm_(std::make_shared<Alarm>())
    , thread_([this](const std::stop_token& stop) { wakeSleepers(stop); })
{
}

SystemClock::~SystemClock()
{
    thread_.request_stop();
    thread_.join();
    sleepers_->close();
}

Clock::Instant SystemClock::now() const
{
    return std::chrono::steady_clock::now();
}

Clock::Date SystemClock::date() const
{
    return std::chrono::system_clock::now();
}

Awaitable<void> SystemClock::sleep(Duration duration)
{
    return SleeperQueue::sleep(
        sleepers_, now() + std::clamp(duration, Duration::zero(), longestSleep), [alarm = alarm_] {
            {
                const std::lock_guard guard(alarm->lock);
                alarm->isChanged = true;
            }
            alarm->changed.notify_one();
        });
}

void SystemClock::wakeSleepers(const std::stop_token& stop)
{
    while (!stop.stop_requested()) {
        while (sleepers_->wakeNext(now())) { }

        std::unique_lock guard(alarm_->lock);
        const auto deadline = sleepers_->nextDeadline();
        const auto isChanged = [this] { return alarm_->isChanged; };
        if (deadline)
            alarm_->changed.wait_until(guard, stop, *deadline, isChanged);
        else
            alarm_->changed.wait(guard, stop, isChanged);
        alarm_->isChanged = false;
    }
}

} // namespace PlatformSupport
