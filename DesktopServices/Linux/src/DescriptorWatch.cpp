// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DescriptorWatch.h"

#include <PlatformSupport/Precondition.h>

#include <poll.h>
#include <sys/eventfd.h>

#include <array>
#include <cstdint>
#include <utility>

namespace DesktopLinux {

// Shared with the calls that are under way to the executor.
struct DescriptorWatch::Callback {
    std::function<void()> readable; // the executor's; empty once the watch is gone
    PlatformSupport::FileDescriptor wake { ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK) };

    // The thread goes on.
    void release() const
    {
        const std::uint64_t one = 1;
        [[maybe_unused]] const auto written = ::write(wake.number(), &one, sizeof one);
    }

    void call() const
    {
        const auto function = readable; // it may destroy the watch
        if (function)
            function();
        release();
    }
};

DescriptorWatch::DescriptorWatch(PlatformSupport::Executor executor, int descriptor, std::function<void()> readable)
    : executor_(std::move(executor))
    , descriptor_(descriptor)
    , callback_(std::make_shared<Callback>(std::move(readable)))
{
    PlatformSupport::precondition(callback_->wake.isOpen(), "no event descriptor can be made");
    thread_ = std::jthread([this](const std::stop_token& stop) { wait(stop); });
}

DescriptorWatch::~DescriptorWatch()
{
    callback_->readable = nullptr;
    thread_.request_stop();
    callback_->release();
    thread_.join();
}

void DescriptorWatch::wait(const std::stop_token& stop) const
{
    bool isCalled = false;
    while (!stop.stop_requested()) {
        std::array<pollfd, 2> awaited { { { callback_->wake.number(), POLLIN, 0 },
            { isCalled ? -1 : descriptor_, POLLIN, 0 } } };
        ::poll(awaited.data(), awaited.size(), -1);
        if (awaited[0].revents != 0) {
            std::uint64_t count = 0;
            [[maybe_unused]] const auto taken = ::read(callback_->wake.number(), &count, sizeof count);
            isCalled = false;
        } else if (awaited[1].revents != 0) {
            isCalled = true;
            executor_.execute([callback = callback_] { callback->call(); });
        }
    }
}

} // namespace DesktopLinux
