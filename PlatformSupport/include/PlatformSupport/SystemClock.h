// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace PlatformSupport {

class SleeperQueue;

// The computer's time. One thread of its own wakes the sleepers; those that still sleep when the clock goes are
// destroyed.
class SystemClock final : public Clock {
public:
    SystemClock();
    SystemClock(const SystemClock&) = delete;
    SystemClock& operator=(const SystemClock&) = delete;
    ~SystemClock() override;

    Instant now() const override;
    Date date() const override;
    Awaitable<void> sleep(Duration duration) override;

private:
    // Shared with the sleepers, some of which end after the clock.
    struct Alarm {
        std::mutex lock;
        std::condition_variable_any changed;
        bool isChanged = false; // under `lock`: there is a new sleeper
    };

    void wakeSleepers(const std::stop_token& stop);

    std::shared_ptr<SleeperQueue> sleepers_;
    std::shared_ptr<Alarm> alarm_;
    std::jthread thread_;
};

} // namespace PlatformSupport
