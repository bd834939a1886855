// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/RunOn.h>

#include <boost/asio/thread_pool.hpp>

#include <cstddef>
#include <utility>

namespace PlatformSupport {

// Threads for work that blocks: files, processes, computation. Also the place for detached tasks.
class BlockingPool {
public:
    explicit BlockingPool(size_t threads)
        : threads_(threads)
    {
    }
    BlockingPool(const BlockingPool&) = delete;
    BlockingPool& operator=(const BlockingPool&) = delete;

    // Waits for work that is running. Work that has not begun is dropped, with the coroutines that wait for it.
    ~BlockingPool()
    {
        threads_.stop();
        threads_.join();
    }

    Executor executor() { return threads_.get_executor(); }

    // Runs the function on one of the threads while the awaiting task waits; its cancellation and its TaskLocals
    // are the awaiting task's.
    template <typename Function> Awaitable<ResultOf<Function>> run(Function function)
    {
        return runOn(executor(), std::move(function));
    }

private:
    boost::asio::thread_pool threads_;
};

} // namespace PlatformSupport
