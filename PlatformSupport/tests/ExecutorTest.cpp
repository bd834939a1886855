// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/SerialExecutor.h>
#include <PlatformSupport/Task.h>

#include <gtest/gtest.h>

#include <latch>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace PlatformSupport {

using namespace std::chrono_literals;

TEST(SerialExecutor, RunsOperationsOneAtATimeInOrder)
{
    constexpr int count = 1000;
    BlockingPool pool(4);
    const SerialExecutor queue(pool.executor());
    HandTurnedLoop loop;
    std::vector<int> order; // without a lock: that is the point
    std::vector<Task<>> tasks;
    for (int i = 0; i < count; ++i)
        tasks.push_back(startTask(loop.executor(), [&, i] { return queue.run([&order, i] { order.push_back(i); }); }));
    for (const Task<>& task : tasks)
        loop.finish(task);

    std::vector<int> expected;
    for (int i = 0; i < count; ++i)
        expected.push_back(i);
    EXPECT_EQ(order, expected);
}

TEST(SerialExecutor, LetsTheNextOperationRunWhileOneAwaits)
{
    HandTurnedLoop loop;
    HandTurnedClock clock(loop);
    const SerialExecutor queue(loop.executor());
    std::vector<std::string> order;
    const auto operation = [&](std::string name) {
        return startTask(queue.executor(), [&order, &clock, name]() -> Awaitable<void> {
            order.push_back(name + " begins");
            co_await clock.sleep(1s);
            order.push_back(name + " ends");
        });
    };
    operation("a");
    operation("b");
    clock.advance(1s);
    EXPECT_EQ(order, (std::vector<std::string> { "a begins", "b begins", "a ends", "b ends" }));
}

TEST(SerialExecutor, ComesBackToTheCallersExecutor)
{
    BlockingPool pool(2);
    const SerialExecutor queue(pool.executor());
    HandTurnedLoop loop;
    loop.finish(startTask(loop.executor(), [&]() -> Awaitable<void> {
        const auto here = std::this_thread::get_id();
        const auto there = co_await queue.run([] { return std::this_thread::get_id(); });
        EXPECT_NE(there, here);
        EXPECT_EQ(std::this_thread::get_id(), here);
    }));
}

TEST(SerialExecutor, PassesValuesAndErrorsOfCoroutines)
{
    HandTurnedLoop loop;
    const SerialExecutor queue(loop.executor());
    loop.finish(startTask(loop.executor(), [&]() -> Awaitable<void> {
        EXPECT_EQ(co_await queue.run([]() -> Awaitable<std::string> { co_return "value"; }), "value");
        const auto fail = []() -> Awaitable<void> {
            throw std::runtime_error("no");
            co_return;
        };
        bool isThrown = false;
        try {
            co_await queue.run(fail);
        } catch (const std::runtime_error&) {
            isThrown = true;
        }
        EXPECT_TRUE(isThrown);
    }));
}

TEST(BlockingPool, RunsBlockingWorkBesideTheLoop)
{
    BlockingPool pool(1);
    HandTurnedLoop loop;
    std::latch released(1);
    const auto blocking = startTask(loop.executor(), [&]() -> Awaitable<int> {
        co_return co_await pool.run([&] {
            released.wait();
            return 3;
        });
    });
    const auto other = startTask(loop.executor(), []() -> Awaitable<int> { co_return 4; });
    EXPECT_EQ(loop.finish(other), 4);
    EXPECT_FALSE(blocking.isFinished());
    released.count_down();
    EXPECT_EQ(loop.finish(blocking), 3);
}

TEST(BlockingPool, PassesErrorsAndValuesThatOnlyMove)
{
    BlockingPool pool(1);
    HandTurnedLoop loop;
    loop.finish(startTask(loop.executor(), [&]() -> Awaitable<void> {
        const auto value = co_await pool.run([] { return std::make_unique<int>(5); });
        EXPECT_EQ(*value, 5);
        bool isThrown = false;
        try {
            co_await pool.run([] { throw std::runtime_error("no"); });
        } catch (const std::runtime_error&) {
            isThrown = true;
        }
        EXPECT_TRUE(isThrown);
    }));
}

TEST(BlockingPool, LetsItsWorkSeeTheCancellationOfTheTask)
{
    BlockingPool pool(1);
    HandTurnedLoop loop;
    std::latch begun(1);
    std::latch cancelled(1);
    const auto task = startTask(loop.executor(), [&] {
        return pool.run([&] {
            EXPECT_FALSE(isCancelled());
            begun.count_down();
            cancelled.wait();
            checkCancellation();
        });
    });
    loop.turn();
    begun.wait();
    task.cancel();
    cancelled.count_down();
    EXPECT_THROW(loop.finish(task), CancellationError);
}

TEST(BlockingPool, RunsSeveralThingsAtOnce)
{
    BlockingPool pool(2);
    HandTurnedLoop loop;
    std::latch both(2);
    const auto meet = [&] { return pool.run([&] { both.arrive_and_wait(); }); };
    const auto one = startTask(loop.executor(), meet);
    const auto two = startTask(loop.executor(), meet);
    loop.finish(one);
    loop.finish(two);
}

TEST(HandTurnedLoop, CountsItsSteps)
{
    HandTurnedLoop loop;
    EXPECT_EQ(loop.turn(), 0U);
    startTask(loop.executor(), []() -> Awaitable<void> { co_return; });
    EXPECT_GT(loop.turn(), 0U);
    EXPECT_EQ(loop.turn(), 0U);
}

} // namespace PlatformSupport
