// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/RunOn.h>

#include <utility>

namespace PlatformSupport {

// The queue of one object: its operations run one at a time, in the order in which they were asked for, on the
// threads of another executor. So what only they touch needs no lock.
//
// An operation that awaits something lets the next one run meanwhile, as on the main thread: after a co_await the
// object may have changed.
class SerialExecutor {
public:
    explicit SerialExecutor(Executor threads);

    const Executor& executor() const { return executor_; }

    // The awaiting task runs the operation, a coroutine or a plain function, in the queue and then comes back.
    template <typename Operation> Awaitable<ResultOf<Operation>> run(Operation operation) const
    {
        return runOn(executor(), std::move(operation));
    }

private:
    Executor executor_;
};

} // namespace PlatformSupport
