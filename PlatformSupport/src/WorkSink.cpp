// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WorkSink.h"

#include <boost/asio/execution.hpp>

#include <utility>

namespace PlatformSupport {

namespace asio = boost::asio;

namespace {

class SinkExecutor {
public:
    explicit SinkExecutor(std::shared_ptr<WorkSink> sink) noexcept
        : sink_(std::move(sink))
    {
    }

    template <typename Function> void execute(Function function) const
    {
        const auto shared = std::make_shared<Function>(std::move(function)); // which may be movable only
        sink_->post([shared] { (*shared)(); });
    }

    asio::execution_context& query(asio::execution::context_t) const noexcept { return sink_->context(); }
    static constexpr asio::execution::blocking_t query(asio::execution::blocking_t) noexcept
    {
        return asio::execution::blocking.never;
    }

    bool operator==(const SinkExecutor& other) const noexcept { return sink_ == other.sink_; }
    bool operator!=(const SinkExecutor& other) const noexcept { return sink_ != other.sink_; }

private:
    std::shared_ptr<WorkSink> sink_;
};

} // namespace

Executor WorkSink::executor()
{
    return SinkExecutor(shared_from_this());
}

} // namespace PlatformSupport
