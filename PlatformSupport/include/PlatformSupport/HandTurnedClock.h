// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>

#include <cstddef>
#include <memory>
#include <mutex>

namespace PlatformSupport {

class HandTurnedLoop;
class SleeperQueue;

// A clock for tests that stands still until it is advanced. Sleepers that are still asleep when it goes are
// destroyed.
class HandTurnedClock final : public Clock {
public:
    // It begins at 2026-01-01 00:00 UTC unless told otherwise.
    HandTurnedClock();
    explicit HandTurnedClock(Date start);

    // Turns the loop, which must outlive the clock, after every sleeper that it wakes: who sleeps again and again
    // then wakes as often as in real life.
    explicit HandTurnedClock(HandTurnedLoop& loop);

    HandTurnedClock(const HandTurnedClock&) = delete;
    HandTurnedClock& operator=(const HandTurnedClock&) = delete;
    ~HandTurnedClock() override;

    // Goes on in steps from deadline to deadline and wakes the sleepers in this order.
    void advance(Duration duration);

    // Time goes by while the program is held up: sleepers are woken, but nothing runs before the loop's next turn.
    void passBlocked(Duration duration);

    size_t sleepers() const;

    Instant now() const override;
    Date date() const override;
    Awaitable<void> sleep(Duration duration) override;

private:
    void turnLoop();
    void moveTo(Instant instant);

    HandTurnedLoop* loop_ = nullptr;
    Date start_;
    std::shared_ptr<SleeperQueue> sleepers_;
    mutable std::mutex lock_;
    Instant now_ {}; // under `lock_`; at first 0
};

} // namespace PlatformSupport
