// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/SystemClock.h>
#include <PlatformSupport/Task.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace PlatformSupport {

using namespace std::chrono_literals;

namespace {

class HandTurnedClockTest : public testing::Test {
protected:
    HandTurnedLoop loop_;
    HandTurnedClock clock_ { loop_ };
    std::vector<std::string> woken_;

    void startSleeper(const std::string& name, Clock::Duration duration)
    {
        startTask(loop_.executor(), [this, name, duration]() -> Awaitable<void> {
            co_await clock_.sleep(duration);
            woken_.push_back(name);
        });
    }
};

TEST_F(HandTurnedClockTest, StandsStillUntilItIsAdvanced)
{
    const auto before = clock_.now();
    loop_.turn();
    EXPECT_EQ(clock_.now(), before);
    clock_.advance(1500ms);
    EXPECT_EQ(clock_.now() - before, 1500ms);
}

TEST_F(HandTurnedClockTest, TellsTheDate)
{
    HandTurnedClock clock(std::chrono::sys_days(std::chrono::year(2030) / 5 / 6));
    clock.advance(25h);
    EXPECT_EQ(clock.date(), std::chrono::sys_days(std::chrono::year(2030) / 5 / 7) + 1h);
}

TEST_F(HandTurnedClockTest, RunsNothingWhileTheProgramIsHeldUp)
{
    startSleeper("first", 1s);
    startSleeper("second", 3s);
    loop_.turn();
    clock_.passBlocked(2s);
    EXPECT_EQ(clock_.now().time_since_epoch(), 2s);
    EXPECT_TRUE(woken_.empty());
    loop_.turn();
    EXPECT_EQ(woken_, (std::vector<std::string> { "first" }));
}

TEST_F(HandTurnedClockTest, WakesSleepersInOrderOfTheirDeadline)
{
    startSleeper("third", 3s);
    startSleeper("first", 1s);
    startSleeper("second", 2s);
    startSleeper("second too", 2s);
    clock_.advance(1999ms);
    EXPECT_EQ(woken_, (std::vector<std::string> { "first" }));
    clock_.advance(10s);
    EXPECT_EQ(woken_, (std::vector<std::string> { "first", "second", "second too", "third" }));
}

TEST_F(HandTurnedClockTest, WakesOnTheVeryDeadline)
{
    startSleeper("now", 1s);
    clock_.advance(1s);
    EXPECT_EQ(woken_.size(), 1U);
}

TEST_F(HandTurnedClockTest, WakesWhoSleepsAgainAndAgainAsOftenAsInLife)
{
    std::vector<Clock::Duration> ticks;
    const auto start = clock_.now();
    startTask(loop_.executor(), [&]() -> Awaitable<void> {
        while (true) {
            co_await clock_.sleep(80ms);
            ticks.push_back(clock_.now() - start);
        }
    });
    clock_.advance(250ms);
    EXPECT_EQ(ticks, (std::vector<Clock::Duration> { 80ms, 160ms, 240ms }));
}

TEST_F(HandTurnedClockTest, LetsSleepersOfNoTimeGoOnWithoutAdvancing)
{
    startSleeper("zero", 0s);
    startSleeper("negative", -1s);
    loop_.turn();
    EXPECT_TRUE(woken_.empty());
    clock_.advance(0s);
    EXPECT_EQ(woken_, (std::vector<std::string> { "zero", "negative" }));
}

TEST_F(HandTurnedClockTest, CountsItsSleepers)
{
    startSleeper("a", 1s);
    startSleeper("b", 2s);
    EXPECT_EQ(clock_.sleepers(), 0U);
    loop_.turn();
    EXPECT_EQ(clock_.sleepers(), 2U);
    clock_.advance(1s);
    EXPECT_EQ(clock_.sleepers(), 1U);
}

TEST_F(HandTurnedClockTest, WithoutALoopLeavesTheTurningToTheTest)
{
    HandTurnedClock clock;
    bool isAwake = false;
    startTask(loop_.executor(), [&]() -> Awaitable<void> {
        co_await clock.sleep(1s);
        isAwake = true;
    });
    loop_.turn();
    clock.advance(1s);
    EXPECT_FALSE(isAwake);
    loop_.turn();
    EXPECT_TRUE(isAwake);
}

TEST(SystemClock, SleepsAtLeastAsLongAsAsked)
{
    HandTurnedLoop loop;
    SystemClock clock;
    const auto slept = startTask(loop.executor(), [&]() -> Awaitable<Clock::Duration> {
        const auto before = clock.now();
        co_await clock.sleep(5ms);
        co_return clock.now() - before;
    });
    EXPECT_GE(loop.finish(slept), 5ms);
}

TEST(SystemClock, WakesTheEarlierOfTwoSleepersThoughItCameLater)
{
    HandTurnedLoop loop;
    SystemClock clock;
    const auto late = startTask(loop.executor(), [&] { return clock.sleep(1h); });
    loop.turn();
    loop.finish(startTask(loop.executor(), [&] { return clock.sleep(1ms); }));
    EXPECT_FALSE(late.isFinished());
}

TEST(SystemClock, LetsCancelledSleepersGoAtOnce)
{
    HandTurnedLoop loop;
    SystemClock clock;
    const auto task = startTask(loop.executor(), [&] { return clock.sleep(Clock::Duration::max()); });
    loop.turn();
    task.cancel();
    EXPECT_THROW(loop.finish(task), CancellationError);
}

TEST(SystemClock, LetsSleepersOfNoTimeGoOn)
{
    HandTurnedLoop loop;
    SystemClock clock;
    loop.finish(startTask(loop.executor(), [&] { return clock.sleep(0s); }));
    loop.finish(startTask(loop.executor(), [&] { return clock.sleep(-1h); }));
}

TEST(SystemClock, TellsTheTimeOfTheComputer)
{
    const SystemClock clock;
    const Clock::Date before = std::chrono::system_clock::now();
    const Clock::Date between = clock.date();
    const Clock::Date after = std::chrono::system_clock::now();
    EXPECT_LE(before, between);
    EXPECT_LE(between, after);
}

} // namespace

} // namespace PlatformSupport
