// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>

#include <functional>
#include <utility>

namespace DesktopFakes {

// The time on a fake desktop, and how it goes by while the program is held up by another one that does not answer.
class FakeTime {
public:
    using Duration = PlatformSupport::Clock::Duration;

    // A test's: whoever is held up takes the clock forward.
    FakeTime(PlatformSupport::HandTurnedLoop& loop, PlatformSupport::HandTurnedClock& clock)
        : executor_(loop.executor())
        , clock_(clock)
        , passed_([&clock](Duration duration) { clock.passBlocked(duration); })
    {
    }

    // A demonstration's: nobody is ever held up.
    FakeTime(PlatformSupport::Executor executor, PlatformSupport::Clock& clock)
        : executor_(std::move(executor))
        , clock_(clock)
        , passed_([](Duration) {})
    {
    }

    void passBlocked(Duration duration) const { passed_(duration); }

    // Calls the function after so much time; at once if that is none. The function must bear to be called when its
    // desktop is gone.
    void after(Duration duration, std::function<void()> function) const;

    PlatformSupport::Clock& clock() const { return clock_; }

private:
    PlatformSupport::Executor executor_;
    PlatformSupport::Clock& clock_;
    std::function<void(Duration)> passed_;
};

} // namespace DesktopFakes
