// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/Task.h>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>

#include <cstddef>
#include <functional>

namespace PlatformSupport {

// A main loop that runs only when it is told to, on the thread that tells it. For tests, and for programs
// without a loop of their own. Coroutines that it still holds when it goes are destroyed.
class HandTurnedLoop {
public:
    HandTurnedLoop()
        : context_(1)
        , work_(context_.get_executor())
    {
    }

    Executor executor() { return context_.get_executor(); }

    // Runs everything that is ready, and what becomes ready by that, but waits for nothing. Gives the number of
    // steps.
    size_t turn() { return context_.poll(); }

    // Turns until the condition holds, waiting for other threads where nothing is ready.
    void turnUntil(const std::function<bool()>& condition)
    {
        while (!condition())
            context_.run_one();
    }

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
    boost::asio::io_context context_;
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> work_;
};

} // namespace PlatformSupport
