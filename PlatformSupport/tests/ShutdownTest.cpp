// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/BlockingValue.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/SerialExecutor.h>
#include <PlatformSupport/SystemClock.h>
#include <PlatformSupport/Task.h>
#include <PlatformSupport/TaskLocal.h>

#include <gtest/gtest.h>

#include <latch>
#include <memory>
#include <optional>

// What is still waiting when loops, clocks and pools go is destroyed with everything it holds.
namespace PlatformSupport {

using namespace std::chrono_literals;

namespace {

// Held by a coroutine; tells whether it is still there.
class Witness {
public:
    std::shared_ptr<int> held() const { return object_; }
    bool isReleased() const { return object_.use_count() == 1; }

private:
    std::shared_ptr<int> object_ = std::make_shared<int>(0);
};

template <typename SomeClock> Task<> startSleeper(HandTurnedLoop& loop, SomeClock& clock, const Witness& witness)
{
    return startTask(
        loop.executor(), [&clock, held = witness.held()]() -> Awaitable<void> { co_await clock.sleep(1h); });
}

} // namespace

TEST(Shutdown, DestroysTasksThatHaveNotBegun)
{
    const Witness witness;
    std::optional<Task<>> task;
    {
        HandTurnedLoop loop;
        HandTurnedClock clock(loop);
        task = startSleeper(loop, clock, witness);
    }
    EXPECT_TRUE(witness.isReleased());
    EXPECT_TRUE(task->isFinished());
}

TEST(Shutdown, DestroysSleepersWithTheirClock)
{
    const Witness witness;
    {
        HandTurnedLoop loop;
        {
            HandTurnedClock clock(loop);
            startSleeper(loop, clock, witness);
            loop.turn();
            EXPECT_FALSE(witness.isReleased());
        }
        loop.turn();
        EXPECT_TRUE(witness.isReleased());
    }
}

TEST(Shutdown, DestroysSleepersOfTheSystemClock)
{
    const Witness witness;
    {
        HandTurnedLoop loop;
        SystemClock clock;
        startSleeper(loop, clock, witness);
        loop.turn();
    }
    EXPECT_TRUE(witness.isReleased());
}

TEST(Shutdown, EndsTheWaitForATaskThatWasDestroyed)
{
    HandTurnedLoop loop;
    std::optional<Task<>> sleeper;
    const Witness witness;
    {
        HandTurnedClock clock(loop);
        sleeper = startSleeper(loop, clock, witness);
        loop.turn();
    }
    EXPECT_THROW(loop.finish(*sleeper), CancellationError);
}

TEST(Shutdown, DestroysWaitersWithWhatTheyWaitFor)
{
    const Witness witness;
    {
        HandTurnedLoop loop;
        HandTurnedClock clock(loop);
        const auto sleeper = startSleeper(loop, clock, witness);
        startTask(loop.executor(), [sleeper, held = witness.held()]() -> Awaitable<void> { co_await sleeper.value(); });
        startTask(loop.executor(), [&loop, &clock, &witness]() -> Awaitable<void> {
            const auto child = startChildTask(
                loop.executor(), [&clock, held = witness.held()]() -> Awaitable<void> { co_await clock.sleep(1h); });
            const auto held = witness.held();
            co_await child.value();
        });
        loop.turn();
    }
    EXPECT_TRUE(witness.isReleased());
}

TEST(Shutdown, UnbindsTaskLocals)
{
    static const TaskLocal<std::shared_ptr<int>> local;
    const Witness witness;
    {
        HandTurnedLoop loop;
        HandTurnedClock clock(loop);
        startTask(loop.executor(), [&]() -> Awaitable<void> {
            const TaskLocal<std::shared_ptr<int>>::Binding bound(local, witness.held());
            co_await local.withValue(nullptr, [&] { return clock.sleep(1h); });
        });
        loop.turn();
    }
    EXPECT_TRUE(witness.isReleased());
}

TEST(Shutdown, DropsWorkThatHasNotBegunWithItsPool)
{
    const Witness witness;
    HandTurnedLoop loop;
    {
        std::latch begun(1);
        std::latch released(1);
        std::optional<BlockingPool> pool(1);
        startTask(loop.executor(), [&] {
            return pool->run([&] {
                begun.count_down();
                released.wait();
            });
        });
        startTask(loop.executor(), [&, held = witness.held()] { return pool->run([held] {}); });
        loop.turn();
        begun.wait();
        released.count_down();
        pool.reset();
    }
    loop.turn();
    EXPECT_TRUE(witness.isReleased());
}

TEST(Shutdown, DestroysWhatWaitsInAQueue)
{
    const Witness witness;
    {
        HandTurnedLoop loop;
        HandTurnedClock clock(loop);
        const SerialExecutor queue(loop.executor());
        startTask(loop.executor(), [&, held = witness.held()] {
            return queue.run([&clock, held]() -> Awaitable<void> { co_await clock.sleep(1h); });
        });
        loop.turn();
        EXPECT_EQ(clock.sleepers(), 1U);
    }
    EXPECT_TRUE(witness.isReleased());
}

TEST(Shutdown, DropsWhatComesToALoopThatIsGone)
{
    const Witness witness;
    HandTurnedClock clock;
    BlockingPool pool(1);
    std::latch begun(1);
    std::latch released(1);
    {
        HandTurnedLoop loop;
        startSleeper(loop, clock, witness);
        startTask(loop.executor(), [&, held = witness.held()] {
            return pool.run([&, held] {
                begun.count_down();
                released.wait();
            });
        });
        loop.turn();
        begun.wait();
    }
    clock.advance(1h);
    released.count_down();
    blockingValue([&] { return pool.run([] {}); }); // behind the other in the pool
    EXPECT_TRUE(witness.isReleased());
}

TEST(Shutdown, DropsWhatComesToAPoolThatIsGone)
{
    const Witness witness;
    HandTurnedClock clock;
    {
        BlockingPool pool(1);
        const auto sleeper = startTask(
            pool.executor(), [&clock, held = witness.held()]() -> Awaitable<void> { co_await clock.sleep(1h); });
        while (clock.sleepers() == 0)
            blockingValue([&] { return pool.run([] {}); });
    }
    clock.advance(1h);
    EXPECT_TRUE(witness.isReleased());
}

TEST(Shutdown, DestroysACancelledTaskThatHadNoTurnToEnd)
{
    const Witness witness;
    {
        HandTurnedLoop loop;
        HandTurnedClock clock(loop);
        const auto task = startSleeper(loop, clock, witness);
        loop.turn();
        task.cancel(); // and the loop does not turn any more
    }
    EXPECT_TRUE(witness.isReleased());
}

} // namespace PlatformSupport
