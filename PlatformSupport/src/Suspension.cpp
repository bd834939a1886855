// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Suspension.h>
#include <PlatformSupport/TaskContext.h>

#include <boost/asio/async_result.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>

#include <atomic>
#include <optional>
#include <stop_token>
#include <utility>

namespace PlatformSupport {

namespace asio = boost::asio;

namespace {

using Handler = asio::async_result<asio::use_awaitable_t<>, void()>::handler_type;
using Start = std::function<void(Resumer)>;

} // namespace

class Resumer::State {
public:
    explicit State(Handler handler)
        : handler_(std::move(handler))
    {
    }

    void resume()
    {
        if (!resumed_.exchange(true))
            asio::post(std::move(handler_));
    }

    static void resumeOnCancellation(const std::shared_ptr<State>& state, const std::stop_token& cancellation)
    {
        state->cancellation_.emplace(cancellation, [weak = std::weak_ptr(state)] {
            if (const auto strong = weak.lock())
                strong->resume();
        });
    }

private:
    std::atomic<bool> resumed_ = false;
    Handler handler_;
    std::optional<std::stop_callback<std::function<void()>>> cancellation_;
};

class SuspensionAccess {
public:
    // All that runs after the resumer is handed over stands on this thread's stack, not in the coroutine.
    static Awaitable<void> suspend(Start start, std::optional<std::stop_token> cancellation)
    {
        return asio::async_initiate<const asio::use_awaitable_t<>, void()>(
            // NOLINTNEXTLINE(performance-unnecessary-value-param): not a reference into the coroutine
            [](Handler handler, Start handOver, std::optional<std::stop_token> token) {
                const auto state = std::make_shared<Resumer::State>(std::move(handler));
                if (token)
                    Resumer::State::resumeOnCancellation(state, *token);
                handOver(Resumer(state));
            },
            asio::use_awaitable, std::move(start), std::move(cancellation));
    }
};

void Resumer::resume() const
{
    state_->resume();
}

Awaitable<void> suspend(Start start)
{
    co_await SuspensionAccess::suspend(std::move(start), std::nullopt);
}

Awaitable<void> suspendUnlessCancelled(Start start)
{
    checkCancellation();
    co_await SuspensionAccess::suspend(std::move(start), TaskContext::current()->cancellation());
    checkCancellation();
}

} // namespace PlatformSupport
