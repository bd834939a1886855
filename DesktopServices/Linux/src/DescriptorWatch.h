// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/FileDescriptor.h>

#include <functional>
#include <memory>
#include <thread>

namespace DesktopLinux {

// Calls a function on an executor whenever something can be read from a descriptor: again only after the function has
// come back, so that it may take its time. A thread of its own does nothing but wait.
//
// Made and destroyed on the executor's thread; the function is not called after that. It may destroy the watch.
class DescriptorWatch {
public:
    // The descriptor stays open until the watch is gone.
    DescriptorWatch(PlatformSupport::Executor executor, int descriptor, std::function<void()> readable);
    DescriptorWatch(const DescriptorWatch&) = delete;
    DescriptorWatch& operator=(const DescriptorWatch&) = delete;
    ~DescriptorWatch();

private:
    struct Callback;

    void wait(const std::stop_token& stop) const;

    PlatformSupport::Executor executor_;
    int descriptor_;
    std::shared_ptr<Callback> callback_;
    std::jthread thread_;
};

} // namespace DesktopLinux
