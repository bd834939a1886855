// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TransferLoop.h"

#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/Precondition.h>
#include <PlatformSupport/URLError.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace PlatformSupport {

namespace {

// The library wants to be set up once in the process, before anything else.
CURLM* newMulti()
{
    static const CURLcode setUp = ::curl_global_init(CURL_GLOBAL_DEFAULT);
    precondition(setUp == CURLE_OK, "the HTTP library cannot be set up");
    CURLM* const multi = ::curl_multi_init();
    precondition(multi != nullptr, "the HTTP library gives no handle");
    return multi;
}

std::exception_ptr endOfSession()
{
    return std::make_exception_ptr(URLError(URLError::Code::cancelled));
}

} // namespace

TransferLoop::TransferLoop()
    : multi_(newMulti())
    , thread_([this](const std::stop_token& stop) { run(stop); })
{
}

TransferLoop::~TransferLoop()
{
    close();
}

void TransferLoop::add(std::shared_ptr<Transfer> transfer)
{
    {
        const std::lock_guard guard(lock_);
        if (!isClosed_) {
            arrivals_.push_back(std::move(transfer));
            wake();
            return;
        }
    }
    transfer->fail(endOfSession());
    transfer->finish();
}

void TransferLoop::wake() noexcept
{
    ::curl_multi_wakeup(multi_.get());
}

void TransferLoop::close()
{
    thread_.request_stop();
    wake();
    if (thread_.joinable())
        thread_.join();
}

void TransferLoop::run(const std::stop_token& stop)
{
    while (!stop.stop_requested()) {
        takeArrivals();
        endCancelled();
        int runningNow = 0;
        ::curl_multi_perform(multi_.get(), &runningNow);
        takeFinished();
        ::curl_multi_poll(multi_.get(), nullptr, 0, endSilentOnes(), nullptr);
    }
    {
        const std::lock_guard guard(lock_);
        isClosed_ = true;
    }
    takeArrivals();
    while (!running_.empty())
        end(running_.back()->handle(), endOfSession());
}

void TransferLoop::takeArrivals()
{
    const std::lock_guard guard(lock_);
    for (auto& transfer : std::exchange(arrivals_, {})) {
        ::curl_multi_add_handle(multi_.get(), transfer->handle());
        running_.push_back(std::move(transfer));
    }
}

void TransferLoop::takeFinished()
{
    int left = 0;
    while (const CURLMsg* const message = ::curl_multi_info_read(multi_.get(), &left)) {
        Transfer& transfer = Transfer::of(message->easy_handle);
        const CURLcode code = message->data.result; // the message goes with the handle
        ::curl_multi_remove_handle(multi_.get(), transfer.handle());
        if (transfer.conclude(code))
            end(transfer);
        else
            ::curl_multi_add_handle(multi_.get(), transfer.handle());
    }
}

int TransferLoop::endSilentOnes()
{
    using std::chrono::milliseconds;
    constexpr milliseconds longestPoll { 60'000 };
    const auto now = Transfer::Clock::now();
    auto next = now + longestPoll;
    for (const auto& transfer : std::vector(running_)) {
        const auto deadline = transfer->deadline(now);
        if (deadline <= now)
            end(transfer->handle(), std::make_exception_ptr(URLError(URLError::Code::timedOut)));
        else
            next = std::min(next, deadline);
    }
    return static_cast<int>(std::chrono::ceil<milliseconds>(next - now).count());
}

void TransferLoop::endCancelled()
{
    for (const auto& transfer : std::vector(running_))
        if (transfer->isCancelled())
            end(transfer->handle(), std::make_exception_ptr(CancellationError()));
}

void TransferLoop::end(CURL* handle, std::exception_ptr error)
{
    ::curl_multi_remove_handle(multi_.get(), handle);
    Transfer& transfer = Transfer::of(handle);
    transfer.fail(std::move(error));
    end(transfer);
}

void TransferLoop::end(Transfer& transfer)
{
    transfer.finish();
    std::erase_if(running_, [&](const auto& running) { return running.get() == &transfer; });
}

} // namespace PlatformSupport
