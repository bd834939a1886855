// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>
#include <PlatformSupport/Suspension.h>

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

namespace PlatformSupport {

// The coroutines that sleep by a clock, by deadline and, for equal ones, in the order in which they fell asleep.
// Shared by the clock and its sleepers. Any thread.
class SleeperQueue {
public:
    // Sleeps until wakeNext() comes to the deadline; `added` is called when the sleeper is in the queue.
    //
    // Errors: CancellationError
    static Awaitable<void> sleep(
        std::shared_ptr<SleeperQueue> queue, Clock::Instant deadline, std::function<void()> added);

    std::optional<Clock::Instant> nextDeadline() const;

    // Wakes the first sleeper if its deadline is not after `now`; false if there is none.
    bool wakeNext(Clock::Instant now);

    size_t size() const;

    // Lets go of all sleepers, which are destroyed, and takes no new ones.
    void close();

private:
    using Key = std::pair<Clock::Instant, uint64_t>;
    class Entry;

    Key newKey(Clock::Instant deadline);
    void add(const Key& key, const Resumer& sleeper);
    void remove(const Key& key);

    mutable std::mutex lock_;
    bool closed_ = false;
    uint64_t sleepersSoFar_ = 0;
    std::map<Key, Resumer> sleepers_;
};

} // namespace PlatformSupport
