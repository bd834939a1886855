// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/Task.h>

#include <gtest/gtest.h>

#include <latch>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace PlatformSupport {

using namespace std::chrono_literals;

namespace {

class TaskTest : public testing::Test {
protected:
    HandTurnedLoop loop_;
    HandTurnedClock clock_ { loop_ };

    template <typename Operation> auto start(Operation operation) { return startTask(loop_.executor(), operation); }

    // A task that sleeps for an hour, and tells how it ended.
    Task<std::string> startSleeper()
    {
        return start([this]() -> Awaitable<std::string> { return sleepAnHour(); });
    }

    Awaitable<std::string> sleepAnHour()
    {
        try {
            co_await clock_.sleep(1h);
            co_return "slept";
        } catch (const CancellationError&) {
            co_return "cancelled";
        }
    }
};

TEST_F(TaskTest, BeginsWhenItsLoopTurns)
{
    bool hasBegun = false;
    const Task<> task = start([&]() -> Awaitable<void> {
        hasBegun = true;
        co_return;
    });
    EXPECT_FALSE(hasBegun);
    EXPECT_FALSE(task.isFinished());
    loop_.turn();
    EXPECT_TRUE(hasBegun);
    EXPECT_TRUE(task.isFinished());
}

TEST_F(TaskTest, NeverBeginsInsideTheCallThatStartsIt)
{
    std::vector<int> order;
    start([&]() -> Awaitable<void> {
        start([&]() -> Awaitable<void> {
            order.push_back(2);
            co_return;
        });
        order.push_back(1);
        co_return;
    });
    loop_.turn();
    EXPECT_EQ(order, (std::vector { 1, 2 }));
}

TEST_F(TaskTest, GivesItsValueToEveryWaiter)
{
    const Task<std::string> task = start([]() -> Awaitable<std::string> { co_return "done"; });
    const auto awaitIt = [&]() -> Awaitable<std::string> { co_return co_await task.value(); };
    const auto early = start(awaitIt);
    loop_.turn();
    const auto late = start(awaitIt);
    EXPECT_EQ(loop_.finish(early), "done");
    EXPECT_EQ(loop_.finish(late), "done");
    EXPECT_EQ(loop_.finish(task), "done");
}

TEST_F(TaskTest, ThrowsItsErrorAtEveryWaiter)
{
    const Task<int> task = start([]() -> Awaitable<int> {
        throw std::runtime_error("broken");
        co_return 0;
    });
    EXPECT_THROW(loop_.finish(task), std::runtime_error);
    EXPECT_THROW(loop_.finish(task), std::runtime_error);
}

TEST_F(TaskTest, GoesOnWithoutItsHandle)
{
    bool isDone = false;
    start([&]() -> Awaitable<void> {
        co_await clock_.sleep(1s);
        isDone = true;
    });
    clock_.advance(1s);
    EXPECT_TRUE(isDone);
}

TEST_F(TaskTest, IsAskedToEndAndNotStopped)
{
    std::optional<bool> seen;
    const Task<> task = start([&]() -> Awaitable<void> {
        seen = isCancelled();
        co_return;
    });
    task.cancel();
    EXPECT_TRUE(task.isCancelled());
    loop_.finish(task);
    EXPECT_EQ(seen, true);
}

TEST_F(TaskTest, ChecksItsCancellation)
{
    const Task<> task = start([]() -> Awaitable<void> {
        checkCancellation();
        co_return;
    });
    task.cancel();
    EXPECT_THROW(loop_.finish(task), CancellationError);
}

TEST_F(TaskTest, IsWokenFromSleepByCancellation)
{
    const auto task = startSleeper();
    loop_.turn();
    EXPECT_EQ(clock_.sleepers(), 1U);
    task.cancel();
    EXPECT_EQ(loop_.finish(task), "cancelled");
    EXPECT_EQ(clock_.sleepers(), 0U);
    EXPECT_EQ(clock_.now(), Clock::Instant());
}

TEST_F(TaskTest, DoesNotFallAsleepWhenCancelledAlready)
{
    const auto task = startSleeper();
    task.cancel();
    EXPECT_EQ(loop_.finish(task), "cancelled");
}

TEST_F(TaskTest, DoesNotMindCancellationAfterItsEnd)
{
    const auto task = start([]() -> Awaitable<int> { co_return 1; });
    loop_.turn();
    task.cancel();
    task.cancel();
    EXPECT_EQ(loop_.finish(task), 1);
}

TEST_F(TaskTest, PassesCancellationToItsChildren)
{
    std::optional<Task<std::string>> child;
    std::optional<Task<std::string>> grandchild;
    const auto parent = start([&]() -> Awaitable<std::string> {
        child = startChildTask(loop_.executor(), [&]() -> Awaitable<std::string> {
            grandchild = startChildTask(loop_.executor(), [&] { return sleepAnHour(); });
            co_return co_await grandchild->value();
        });
        co_return co_await child->value();
    });
    loop_.turn();
    EXPECT_EQ(clock_.sleepers(), 1U);
    parent.cancel();
    EXPECT_EQ(loop_.finish(parent), "cancelled");
    EXPECT_TRUE(child->isCancelled());
    EXPECT_TRUE(grandchild->isCancelled());
}

TEST_F(TaskTest, IsNotCancelledWithItsChild)
{
    const auto parent = start([&]() -> Awaitable<std::string> {
        const auto child = startChildTask(loop_.executor(), [&] { return sleepAnHour(); });
        child.cancel();
        co_return co_await child.value() + (isCancelled() ? ", parent too" : ", parent not");
    });
    EXPECT_EQ(loop_.finish(parent), "cancelled, parent not");
}

TEST_F(TaskTest, HasChildrenThatAreCancelledFromTheStart)
{
    const auto parent = start([&]() -> Awaitable<std::string> {
        co_return co_await startChildTask(loop_.executor(), [&] { return sleepAnHour(); }).value();
    });
    parent.cancel();
    EXPECT_EQ(loop_.finish(parent), "cancelled");
}

TEST_F(TaskTest, DoesNotCancelTasksThatAreNotItsChildren)
{
    std::vector<Task<std::string>> others;
    const auto waiter = start([&]() -> Awaitable<std::string> {
        others.push_back(startSleeper());
        others.push_back(startDetachedTask(loop_.executor(), [&] { return sleepAnHour(); }));
        co_return co_await others[0].value() + " and " + co_await others[1].value();
    });
    loop_.turn();
    waiter.cancel();
    loop_.turn();
    EXPECT_FALSE(waiter.isFinished());
    clock_.advance(1h);
    EXPECT_EQ(loop_.finish(waiter), "slept and slept");
}

TEST_F(TaskTest, CallsItsCancellationHandlerOnce)
{
    int calls = 0;
    const auto task = start([&]() -> Awaitable<std::string> {
        co_return co_await withCancellationHandler([&] { return sleepAnHour(); }, [&] { ++calls; });
    });
    loop_.turn();
    EXPECT_EQ(calls, 0);
    task.cancel();
    EXPECT_EQ(calls, 1);
    task.cancel();
    EXPECT_EQ(loop_.finish(task), "cancelled");
    EXPECT_EQ(calls, 1);
}

TEST_F(TaskTest, ForgetsItsCancellationHandlerAfterTheOperation)
{
    int calls = 0;
    const auto task = start([&]() -> Awaitable<std::string> {
        co_await withCancellationHandler([&] { return clock_.sleep(1s); }, [&] { ++calls; });
        co_return co_await sleepAnHour();
    });
    clock_.advance(1s);
    task.cancel();
    EXPECT_EQ(loop_.finish(task), "cancelled");
    EXPECT_EQ(calls, 0);
}

TEST_F(TaskTest, CallsItsCancellationHandlerFirstWhenCancelledAlready)
{
    std::vector<std::string> order;
    const auto task = start([&]() -> Awaitable<void> {
        const auto operation = [&]() -> Awaitable<void> {
            order.emplace_back("operation");
            co_return;
        };
        co_await withCancellationHandler(operation, [&] { order.emplace_back("handler"); });
    });
    task.cancel();
    loop_.finish(task);
    EXPECT_EQ(order, (std::vector<std::string> { "handler", "operation" }));
}

TEST_F(TaskTest, MayBeCancelledFromAnyThread)
{
    BlockingPool pool(1);
    for (int i = 0; i < 100; ++i) {
        const auto task = startSleeper();
        startDetachedTask(pool.executor(), [task]() -> Awaitable<void> {
            task.cancel();
            co_return;
        });
        EXPECT_EQ(loop_.finish(task), "cancelled");
    }
}

TEST_F(TaskTest, MayBeAwaitedOnAnotherThread)
{
    BlockingPool pool(2);
    std::latch begun(1);
    const auto slow = startTask(pool.executor(), [&]() -> Awaitable<int> {
        begun.wait();
        co_return 5;
    });
    const auto waiter = start([&]() -> Awaitable<int> { co_return co_await slow.value(); });
    loop_.turn();
    begun.count_down();
    EXPECT_EQ(loop_.finish(waiter), 5);
}

} // namespace

TEST(Cancellation, DoesNotConcernCodeOutsideOfTasks)
{
    EXPECT_FALSE(isCancelled());
    EXPECT_NO_THROW(checkCancellation());
}

} // namespace PlatformSupport
