// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>

#include <functional>
#include <memory>

namespace PlatformSupport {

class WorkQueue;

// The main loop of a program whose thread waits in somebody else's loop, as in that of a window toolkit.
//
// Whenever there is work, the host is asked, on any thread, to call runOne() on its own thread, once and soon. It must
// not do so inside the question, and is not asked any more once the loop is gone.
// Coroutines that it still holds when it goes are destroyed; what comes later is dropped.
class HostedLoop {
public:
    explicit HostedLoop(std::function<void()> askHost);
    HostedLoop(const HostedLoop&) = delete;
    HostedLoop& operator=(const HostedLoop&) = delete;
    ~HostedLoop();

    Executor executor();

    void runOne();

private:
    std::shared_ptr<WorkQueue> work_;
};

} // namespace PlatformSupport
