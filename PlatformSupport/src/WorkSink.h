// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>

#include <boost/asio/execution_context.hpp>

#include <functional>
#include <memory>

namespace PlatformSupport {

// What takes work to be run later. It is owned together with the executors that it gives away, so none of these
// is ever left without it: when the loop or pool behind it is gone, it drops what it is given.
//
// Any thread.
class WorkSink : public std::enable_shared_from_this<WorkSink> {
public:
    using Work = std::function<void()>;

    virtual ~WorkSink() = default;

    // Never runs the work inside the call.
    virtual void post(Work work) = 0;

    Executor executor();

    // For the library: what it keeps for each place where code runs.
    boost::asio::execution_context& context() { return context_; }

private:
    boost::asio::execution_context context_;
};

} // namespace PlatformSupport
