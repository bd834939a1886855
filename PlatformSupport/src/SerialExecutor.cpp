// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WorkSink.h"

#include <PlatformSupport/SerialExecutor.h>

#include <boost/asio/post.hpp>

#include <deque>
#include <mutex>

namespace PlatformSupport {

namespace {

// Has at most one turn waiting or running on the threads at any time; each runs one piece of work.
class SerialQueue final : public WorkSink {
public:
    explicit SerialQueue(Executor threads)
        : threads_(std::move(threads))
    {
    }

    void post(Work work) override
    {
        {
            const std::lock_guard guard(lock_);
            work_.push_back(std::move(work));
            if (std::exchange(hasTurn_, true))
                return;
        }
        askForTurn();
    }

private:
    // Dropped unused when the threads are gone; then so is the work.
    class Turn {
    public:
        explicit Turn(std::shared_ptr<SerialQueue> queue)
            : queue_(std::move(queue))
        {
        }
        Turn(Turn&&) noexcept = default;
        Turn& operator=(Turn&&) = delete;
        ~Turn()
        {
            if (queue_)
                queue_->drop();
        }

        void operator()() { std::exchange(queue_, nullptr)->take(); }

    private:
        std::shared_ptr<SerialQueue> queue_;
    };

    void askForTurn() { boost::asio::post(threads_, Turn(std::static_pointer_cast<SerialQueue>(shared_from_this()))); }

    void take()
    {
        next()();
        {
            const std::lock_guard guard(lock_);
            hasTurn_ = !work_.empty();
            if (!hasTurn_)
                return;
        }
        askForTurn();
    }

    Work next()
    {
        const std::lock_guard guard(lock_);
        Work work = std::move(work_.front());
        work_.pop_front();
        return work;
    }

    void drop()
    {
        std::deque<Work> dropped; // destroyed without the lock: it may hold coroutines, which post as they go
        const std::lock_guard guard(lock_);
        hasTurn_ = false;
        dropped.swap(work_);
    }

    Executor threads_;
    std::mutex lock_;
    bool hasTurn_ = false; // these two under `lock_`
    std::deque<Work> work_;
};

} // namespace

SerialExecutor::SerialExecutor(Executor threads)
    : executor_(std::make_shared<SerialQueue>(std::move(threads))->executor())
{
}

} // namespace PlatformSupport
