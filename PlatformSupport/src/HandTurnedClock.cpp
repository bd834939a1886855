// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "SleeperQueue.h"

#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>

#include <algorithm>

namespace PlatformSupport {

namespace {

constexpr Clock::Date newYear = std::chrono::sys_days(std::chrono::year(2026) / 1 / 1);

}

HandTurnedClock::HandTurnedClock()
    : HandTurnedClock(newYear)
{
}

HandTurnedClock::HandTurnedClock(Date start)
    : start_(start)
    , sleepers_(std::make_shared<SleeperQueue>())
{
}

HandTurnedClock::HandTurnedClock(HandTurnedLoop& loop)
    : HandTurnedClock(newYear)
{
    loop_ = &loop;
}

HandTurnedClock::~HandTurnedClock()
{
    sleepers_->close();
}

void HandTurnedClock::advance(Duration duration)
{
    const Instant end = now() + duration;
    turnLoop();
    for (auto deadline = sleepers_->nextDeadline(); deadline && *deadline <= end;
         deadline = sleepers_->nextDeadline()) {
        moveTo(*deadline);
        sleepers_->wakeNext(*deadline);
        turnLoop();
    }
    moveTo(end);
}

void HandTurnedClock::passBlocked(Duration duration)
{
    moveTo(now() + duration);
    while (sleepers_->wakeNext(now())) { }
}

size_t HandTurnedClock::sleepers() const
{
    return sleepers_->size();
}

Clock::Instant HandTurnedClock::now() const
{
    const std::lock_guard guard(lock_);
    return now_;
}

Clock::Date HandTurnedClock::date() const
{
    return start_ + now().time_since_epoch();
}

Awaitable<void> HandTurnedClock::sleep(Duration duration)
{
    return SleeperQueue::sleep(sleepers_, now() + std::max(duration, Duration::zero()), [] {});
}

void HandTurnedClock::turnLoop()
{
    if (loop_)
        loop_->turn();
}

void HandTurnedClock::moveTo(Instant instant)
{
    const std::lock_guard guard(lock_);
    now_ = std::max(now_, instant);
}

} // namespace PlatformSupport
