// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/RunOn.h>

#include <cstddef>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace PlatformSupport {

class WorkQueue;

// Threads for work that blocks: files, processes, computation. Also the place for detached tasks.
class BlockingPool {
public:
    explicit BlockingPool(size_t threads);
    BlockingPool(const BlockingPool&) = delete;
    BlockingPool& operator=(const BlockingPool&) = delete;

    // Waits for work that is running. Work that has not begun is dropped, with the coroutines that wait for it.
    ~BlockingPool();

    Executor executor();

    // Runs the function on one of the threads while the awaiting task waits; its cancellation and its TaskLocals
    // are the awaiting task's.
    template <typename Function> Awaitable<ResultOf<Function>> run(Function function)
    {
        return runOn(executor(), std::move(function));
    }

private:
    std::shared_ptr<WorkQueue> work_;
    std::vector<std::jthread> threads_;
};

} // namespace PlatformSupport
