// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/TaskContext.h>

#include <boost/asio/async_result.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace PlatformSupport {

// The right to let a suspended coroutine go on. Copies share it: the first resume() counts, from any thread,
// and the coroutine goes on by its own executor, never inside resume(). When the last copy is gone unused, the
// coroutine is destroyed.
class Resumer {
public:
    void resume() const;

private:
    friend class SuspensionAccess;
    class State;

    explicit Resumer(std::shared_ptr<State> state)
        : state_(std::move(state))
    {
    }

    std::shared_ptr<State> state_;
};

// Suspends the coroutine, then hands its resumer to `start`, which passes it to whoever is to wake the
// coroutine. `start` throws nothing, and owns what it uses: the coroutine may be gone before it returns.
Awaitable<void> suspend(std::function<void(Resumer)> start);

// The same, but the task's cancellation wakes the coroutine too.
//
// Errors: CancellationError
Awaitable<void> suspendUnlessCancelled(std::function<void(Resumer)> start);

} // namespace PlatformSupport
