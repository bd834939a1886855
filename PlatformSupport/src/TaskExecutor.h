// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/TaskContext.h>

#include <boost/asio/execution.hpp>
#include <boost/asio/prefer.hpp>
#include <boost/asio/query.hpp>
#include <boost/asio/require.hpp>

#include <concepts>
#include <memory>
#include <utility>

namespace PlatformSupport {

// Runs what another executor runs, with a task's context as the current one. A coroutine resumes through its
// executor each time, so the context goes with the coroutine from thread to thread.
//
// It keeps no loop running: a task that nobody wakes again must not hold up its loop's end.
class TaskExecutor {
public:
    TaskExecutor(Executor executor, std::shared_ptr<TaskContext> context) noexcept
        : executor_(std::move(executor))
        , context_(std::move(context))
    {
    }

    template <typename Function> void execute(Function function) const
    {
        executor_.execute([context = context_, function = std::move(function)]() mutable {
            const CurrentTask current(std::move(context));
            std::move(function)();
        });
    }

    bool operator==(const TaskExecutor& other) const noexcept
    {
        return executor_ == other.executor_ && context_ == other.context_;
    }
    bool operator!=(const TaskExecutor& other) const noexcept { return !(*this == other); }

    // What follows lets the library ask this executor for what it asks of the other.

    template <typename Property>
    requires boost::asio::can_query_v<const Executor&, Property>
    decltype(auto) query(const Property& property) const { return boost::asio::query(executor_, property); }

    template <typename Property>
    requires boost::asio::can_require_v<const Executor&, Property> TaskExecutor require(const Property& property)
    const { return { boost::asio::require(executor_, property), context_ }; }

    template <typename Property>
    requires(boost::asio::can_prefer_v<const Executor&,
                 Property> && !std::convertible_to<Property, boost::asio::execution::outstanding_work_t>) TaskExecutor
        prefer(const Property& property)
    const { return { boost::asio::prefer(executor_, property), context_ }; }

private:
    Executor executor_;
    std::shared_ptr<TaskContext> context_;
};

} // namespace PlatformSupport
