// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TaskExecutor.h"

#include <PlatformSupport/Spawn.h>

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/post.hpp>

#include <utility>

namespace PlatformSupport::Detail {

void spawn(const Executor& executor, std::shared_ptr<TaskContext> context, Awaitable<void> work)
{
    const TaskExecutor taskExecutor(executor, std::move(context));
    boost::asio::post(executor, [taskExecutor, work = std::move(work)]() mutable {
        boost::asio::co_spawn(taskExecutor, std::move(work), boost::asio::detached);
    });
}

} // namespace PlatformSupport::Detail
