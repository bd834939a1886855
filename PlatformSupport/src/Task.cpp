// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Task.h>

namespace PlatformSupport::Detail {

bool TaskState::isFinished() const
{
    const std::lock_guard guard(lock_);
    return finished_;
}

void TaskState::finish()
{
    std::vector<Resumer> waiters;
    {
        const std::lock_guard guard(lock_);
        finished_ = true;
        waiters.swap(waiters_);
    }
    for (const Resumer& waiter : waiters)
        waiter.resume();
}

void TaskState::resumeWhenFinished(const Resumer& waiter)
{
    {
        const std::lock_guard guard(lock_);
        if (!finished_) {
            waiters_.push_back(waiter);
            return;
        }
    }
    waiter.resume();
}

Awaitable<void> TaskState::untilFinished(std::shared_ptr<TaskState> state)
{
    const auto start = [state = std::move(state)](const Resumer& waiter) { state->resumeWhenFinished(waiter); };
    co_await suspend(start);
}

} // namespace PlatformSupport::Detail
