// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>

#include <functional>
#include <memory>
#include <utility>

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
