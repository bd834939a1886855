// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WorkQueue.h"

#include <PlatformSupport/BlockingPool.h>

namespace PlatformSupport {

BlockingPool::BlockingPool(size_t threads)
    : work_(std::make_shared<WorkQueue>())
{
    for (size_t i = 0; i < threads; ++i) {
        threads_.emplace_back([work = work_] {
            while (work->waitAndRunOne()) { }
        });
    }
}

BlockingPool::~BlockingPool()
{
    work_->close();
    threads_.clear(); // joins them
}

Executor BlockingPool::executor()
{
    return work_->executor();
}

} // namespace PlatformSupport
