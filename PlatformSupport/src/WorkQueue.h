// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "WorkSink.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace PlatformSupport {

// Work for the threads that call its run functions, in order. Any thread.
class WorkQueue final : public WorkSink {
public:
    WorkQueue() = default;

    // `onWork` is called for each piece of work that comes, on the thread that it comes from, and never once close()
    // is done. It must not call back.
    explicit WorkQueue(std::function<void()> onWork);

    void post(Work work) override;

    // Runs the first piece of work on this thread; false if there is none.
    bool runOne();

    // The same, but waits for work; false once the queue is closed.
    bool waitAndRunOne();

    // Drops all work that waits, and what is posted from now on.
    void close();

private:
    std::function<void()> onWork_;
    std::mutex lock_;
    std::condition_variable changed_;
    bool isClosed_ = false; // these two under `lock_`
    std::deque<Work> work_;
};

} // namespace PlatformSupport
