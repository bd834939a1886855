// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TimedSignal.h"

#include <PlatformSupport/Task.h>

#include <utility>

namespace DesktopLinux {

using PlatformSupport::Awaitable;

namespace {

struct Alarm {
    PlatformSupport::Task<> task;

    ~Alarm() { task.cancel(); }
};

} // namespace

TimedSignal::TimedSignal(PlatformSupport::Executor executor, PlatformSupport::Clock& clock)
    : executor_(std::move(executor))
    , clock_(clock)
{
}

void TimedSignal::give()
{
    state_->isGiven = true;
    if (const auto waiter = std::exchange(state_->waiter, std::nullopt))
        waiter->resume();
}

Awaitable<bool> TimedSignal::wait(PlatformSupport::Clock::Duration limit)
{
    const auto state = state_;
    if (!state->isGiven) {
        const auto ring = [state, &clock = clock_, limit]() -> Awaitable<void> {
            co_await clock.sleep(limit);
            if (const auto waiter = std::exchange(state->waiter, std::nullopt))
                waiter->resume();
        };
        const Alarm alarm { PlatformSupport::startDetachedTask(executor_, ring) };
        const auto keepWaiter = [state](PlatformSupport::Resumer waiter) { state->waiter = std::move(waiter); };
        co_await PlatformSupport::suspendUnlessCancelled(keepWaiter);
    }
    co_return std::exchange(state->isGiven, false);
}

} // namespace DesktopLinux
