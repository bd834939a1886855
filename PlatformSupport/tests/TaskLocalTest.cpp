// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/Task.h>
#include <PlatformSupport/TaskLocal.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace PlatformSupport {

using namespace std::chrono_literals;

namespace {

const TaskLocal<int> depth;
const TaskLocal<std::string> user { "nobody" };

Awaitable<int> currentDepth()
{
    co_return depth.get();
}

class TaskLocalTest : public testing::Test {
protected:
    HandTurnedLoop loop_;
    HandTurnedClock clock_ { loop_ };

    template <typename Operation> auto run(Operation operation)
    {
        return loop_.finish(startTask(loop_.executor(), operation));
    }
};

TEST_F(TaskLocalTest, HasItsDefaultWhereNothingIsBound)
{
    EXPECT_EQ(user.get(), "nobody");
    EXPECT_EQ(run(currentDepth), 0);
}

TEST_F(TaskLocalTest, IsBoundUntilTheEndOfTheBlock)
{
    run([]() -> Awaitable<void> {
        {
            const TaskLocal<int>::Binding one(depth, 1);
            const TaskLocal<std::string>::Binding ada(user, "Ada");
            EXPECT_EQ(co_await currentDepth(), 1);
            {
                const TaskLocal<int>::Binding two(depth, 2);
                EXPECT_EQ(co_await currentDepth(), 2);
                EXPECT_EQ(user.get(), "Ada");
            }
            EXPECT_EQ(depth.get(), 1);
        }
        EXPECT_EQ(depth.get(), 0);
        EXPECT_EQ(user.get(), "nobody");
    });
}

TEST_F(TaskLocalTest, IsBoundForAnOperation)
{
    run([]() -> Awaitable<void> {
        EXPECT_EQ(co_await depth.withValue(3, currentDepth), 3);
        EXPECT_EQ(depth.get(), 0);
    });
}

TEST_F(TaskLocalTest, IsUnboundWhenAnErrorLeavesTheBlock)
{
    run([]() -> Awaitable<void> {
        const auto fail = []() -> Awaitable<int> {
            throw CancellationError();
            co_return 0;
        };
        try {
            co_await depth.withValue(3, fail);
            ADD_FAILURE() << "no error";
        } catch (const CancellationError&) {
            EXPECT_EQ(depth.get(), 0);
        }
    });
}

TEST_F(TaskLocalTest, StaysWithItsTaskWhenTasksTakeTurns)
{
    std::vector<int> seen;
    for (int i = 1; i <= 3; ++i) {
        startTask(loop_.executor(), [this, i, &seen]() -> Awaitable<void> {
            const TaskLocal<int>::Binding bound(depth, i);
            co_await clock_.sleep(1s);
            seen.push_back(depth.get());
            co_await clock_.sleep(1s);
            seen.push_back(depth.get());
        });
    }
    clock_.advance(2s);
    EXPECT_EQ(seen, (std::vector { 1, 2, 3, 1, 2, 3 }));
    EXPECT_EQ(depth.get(), 0);
}

TEST_F(TaskLocalTest, IsInheritedByTasksStartedMeanwhile)
{
    std::vector<Task<int>> tasks;
    run([&]() -> Awaitable<void> {
        const TaskLocal<int>::Binding bound(depth, 4);
        tasks.push_back(startTask(loop_.executor(), currentDepth));
        tasks.push_back(startChildTask(loop_.executor(), currentDepth));
        tasks.push_back(startDetachedTask(loop_.executor(), currentDepth));
        co_return;
    });
    EXPECT_EQ(loop_.finish(tasks[0]), 4);
    EXPECT_EQ(loop_.finish(tasks[1]), 4);
    EXPECT_EQ(loop_.finish(tasks[2]), 0);
}

TEST_F(TaskLocalTest, IsInheritedFromCodeOutsideOfTasks)
{
    const TaskLocal<int>::Binding bound(depth, 6);
    EXPECT_EQ(run(currentDepth), 6);
}

TEST_F(TaskLocalTest, DoesNotFlowBackFromAChild)
{
    run([&]() -> Awaitable<void> {
        const auto child = startChildTask(loop_.executor(), [&]() -> Awaitable<void> {
            const TaskLocal<int>::Binding bound(depth, 9);
            co_await clock_.sleep(1s);
        });
        co_await startTask(loop_.executor(), currentDepth).value(); // the child has begun
        EXPECT_EQ(depth.get(), 0);
    });
}

TEST_F(TaskLocalTest, GoesAlongToOtherThreads)
{
    BlockingPool pool(1);
    run([&]() -> Awaitable<void> {
        const TaskLocal<int>::Binding bound(depth, 8);
        EXPECT_EQ(co_await pool.run([] { return depth.get(); }), 8);
        EXPECT_EQ(co_await pool.run(currentDepth), 8);
        EXPECT_EQ(depth.get(), 8);
    });
}

TEST(TaskLocalDeathTest, IsUnboundInTheReverseOrder)
{
    const auto unbindTheOuterFirst = [] {
        auto outer = std::make_unique<TaskLocal<int>::Binding>(depth, 1);
        const TaskLocal<int>::Binding inner(depth, 2);
        outer.reset();
    };
    EXPECT_DEATH(unbindTheOuterFirst(), "wrong order");
}

} // namespace

} // namespace PlatformSupport
