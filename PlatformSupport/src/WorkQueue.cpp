// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WorkQueue.h"

#include <utility>

namespace PlatformSupport {

WorkQueue::WorkQueue(std::function<void()> onWork)
    : onWork_(std::move(onWork))
{
}

void WorkQueue::post(Work work)
{
    {
        const std::lock_guard guard(lock_);
        if (isClosed_)
            return;
        work_.push_back(std::move(work));
        if (onWork_)
            onWork_();
    }
    changed_.notify_one();
}

bool WorkQueue::runOne()
{
    Work work;
    {
        const std::lock_guard guard(lock_);
        if (work_.empty())
            return false;
        work = std::move(work_.front());
        work_.pop_front();
    }
    work();
    return true;
}

bool WorkQueue::waitAndRunOne()
{
    while (!runOne()) {
        std::unique_lock guard(lock_);
        changed_.wait(guard, [this] { return isClosed_ || !work_.empty(); });
        if (isClosed_)
            return false;
    }
    return true;
}

void WorkQueue::close()
{
    std::deque<Work> dropped; // destroyed without the lock: it may hold coroutines, which post as they go
    {
        const std::lock_guard guard(lock_);
        isClosed_ = true;
        dropped.swap(work_);
    }
    changed_.notify_all();
}

} // namespace PlatformSupport
