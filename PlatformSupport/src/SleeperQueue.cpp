// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "SleeperQueue.h"

#include <utility>

namespace PlatformSupport {

// Takes a sleeper that was cancelled, and not woken, out of the queue.
class SleeperQueue::Entry {
public:
    Entry(std::shared_ptr<SleeperQueue> queue, Key key)
        : queue_(std::move(queue))
        , key_(key)
    {
    }
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    ~Entry() { queue_->remove(key_); }

private:
    std::shared_ptr<SleeperQueue> queue_;
    Key key_;
};

Awaitable<void> SleeperQueue::sleep(
    std::shared_ptr<SleeperQueue> queue, Clock::Instant deadline, std::function<void()> added)
{
    const Key key = queue->newKey(deadline);
    const Entry entry(queue, key);
    const auto start = [queue, key, added = std::move(added)](const Resumer& sleeper) {
        queue->add(key, sleeper);
        added();
    };
    co_await suspendUnlessCancelled(start);
}

std::optional<Clock::Instant> SleeperQueue::nextDeadline() const
{
    const std::lock_guard guard(lock_);
    if (sleepers_.empty())
        return std::nullopt;
    return sleepers_.begin()->first.first;
}

bool SleeperQueue::wakeNext(Clock::Instant now)
{
    std::optional<Resumer> sleeper;
    {
        const std::lock_guard guard(lock_);
        const auto first = sleepers_.begin();
        if (first == sleepers_.end() || first->first.first > now)
            return false;
        sleeper = std::move(first->second);
        sleepers_.erase(first);
    }
    sleeper->resume();
    return true;
}

size_t SleeperQueue::size() const
{
    const std::lock_guard guard(lock_);
    return sleepers_.size();
}

void SleeperQueue::close()
{
    std::map<Key, Resumer> sleepers; // destroyed without the lock
    const std::lock_guard guard(lock_);
    closed_ = true;
    sleepers.swap(sleepers_);
}

SleeperQueue::Key SleeperQueue::newKey(Clock::Instant deadline)
{
    const std::lock_guard guard(lock_);
    return { deadline, sleepersSoFar_++ };
}

void SleeperQueue::add(const Key& key, const Resumer& sleeper)
{
    const std::lock_guard guard(lock_);
    if (!closed_)
        sleepers_.emplace(key, sleeper);
}

void SleeperQueue::remove(const Key& key)
{
    std::optional<Resumer> sleeper; // destroyed without the lock
    const std::lock_guard guard(lock_);
    if (const auto found = sleepers_.find(key); found != sleepers_.end()) {
        sleeper = std::move(found->second);
        sleepers_.erase(found);
    }
}

} // namespace PlatformSupport
