// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/Outcome.h>
#include <PlatformSupport/Task.h>

#include <cstddef>
#include <functional>
#include <memory>

namespace PlatformSupport {

class WorkQueue;

// A main loop that runs only when it is told to, on the thread that tells it. For tests, and for programs
// without a loop of their own. Coroutines that it still holds when it goes are destroyed.
class HandTurnedLoop {
public:
    HandTurnedLoop();
    HandTurnedLoop(const HandTurnedLoop&) = delete;
    HandTurnedLoop& operator=(const HandTurnedLoop&) = delete;
    ~HandTurnedLoop();

    Executor executor();

    // Runs everything that is ready, and what becomes ready by that, but waits for nothing. Gives the number of
    // steps.
    size_t turn();

    // Turns until the condition holds, waiting for other threads where nothing is ready.
    void turnUntil(const std::function<bool()>& condition);

    // Turns until the task is finished; gives its value or throws what it threw.
    template <typename T> T finish(const Task<T>& task)
    {
        // The task may end on another thread: its value is awaited here, so that this loop notices.
        Outcome<T> outcome;
        bool isFinished = false;
        startDetachedTask(executor(), [&]() -> Awaitable<void> {
            const auto value = [&] { return task.value(); };
            co_await captureAwaited(outcome, value);
            isFinished = true;
        });
        turnUntil([&] { return isFinished; });
        return outcome.take();
    }

private:
    std::shared_ptr<WorkQueue> work_;
};

} // namespace PlatformSupport
