// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/Outcome.h>
#include <PlatformSupport/Spawn.h>
#include <PlatformSupport/Suspension.h>
#include <PlatformSupport/TaskContext.h>

#include <memory>
#include <utility>

namespace PlatformSupport {

namespace Detail {

template <typename T, typename Operation>
Awaitable<void> captureAndResume(Operation operation, std::shared_ptr<Outcome<T>> outcome, Resumer caller)
{
    if constexpr (AsynchronousOperation<Operation>)
        co_await captureAwaited(*outcome, operation);
    else
        outcome->capture(operation);
    caller.resume();
}

} // namespace Detail

// Runs a coroutine or a plain function on another executor, as part of the current task, and comes back to
// the caller's executor with its value or its exception. Never runs inside the call, even if it is there already.
template <typename Operation> Awaitable<ResultOf<Operation>> runOn(Executor executor, Operation operation)
{
    using T = ResultOf<Operation>;
    const auto outcome = std::make_shared<Outcome<T>>();
    const auto shared = std::make_shared<Operation>(std::move(operation));
    const auto start = [executor, context = TaskContext::current(), outcome, shared](const Resumer& caller) {
        Detail::spawn(executor, context, Detail::captureAndResume<T>(std::move(*shared), outcome, caller));
    };
    co_await suspend(start);
    co_return outcome->take();
}

} // namespace PlatformSupport
