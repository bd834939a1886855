// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/Task.h>

#include <utility>

namespace PlatformSupport {

// Runs asynchronous work to its end from code that cannot await: the calling thread runs it, detached from the
// current task, and does nothing else meanwhile. What the operation throws is thrown.
//
// The operation must not need the calling thread: from the main thread, an operation that goes to the main
// thread waits for ever.
template <AsynchronousOperation Operation> ResultOf<Operation> blockingValue(Operation operation)
{
    HandTurnedLoop loop;
    return loop.finish(startDetachedTask(loop.executor(), std::move(operation)));
}

// The same for an operation that is given a value to own.
template <typename Value, typename Operation> auto blockingValue(Value value, Operation operation)
{
    return blockingValue([&] { return operation(std::move(value)); });
}

} // namespace PlatformSupport
