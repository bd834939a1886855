// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/BlockingValue.h>
#include <PlatformSupport/TaskLocal.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace PlatformSupport {

namespace {

Awaitable<int> answer()
{
    co_return 42;
}

} // namespace

TEST(BlockingValue, GivesTheOperationsValue)
{
    EXPECT_EQ(blockingValue(answer), 42);
    EXPECT_EQ(blockingValue([]() -> Awaitable<std::string> { co_return "text"; }), "text");
}

TEST(BlockingValue, RunsAnOperationWithoutValue)
{
    bool isRun = false;
    blockingValue([&]() -> Awaitable<void> {
        isRun = true;
        co_return;
    });
    EXPECT_TRUE(isRun);
}

TEST(BlockingValue, ThrowsWhatTheOperationThrows)
{
    const auto fail = []() -> Awaitable<int> {
        throw std::runtime_error("no");
        co_return 0;
    };
    EXPECT_THROW(blockingValue(fail), std::runtime_error);
}

TEST(BlockingValue, WaitsForOtherThreads)
{
    BlockingPool pool(1);
    EXPECT_EQ(blockingValue([&]() -> Awaitable<int> { co_return co_await pool.run([] { return 7; }); }), 7);
}

TEST(BlockingValue, HandsOverAValue)
{
    const auto doubled = [](std::unique_ptr<int> value) -> Awaitable<int> { co_return 2 * *value; };
    EXPECT_EQ(blockingValue(std::make_unique<int>(21), doubled), 42);
}

TEST(BlockingValue, IsDetachedFromTheCaller)
{
    static const TaskLocal<int> depth;
    const TaskLocal<int>::Binding bound(depth, 5);
    EXPECT_EQ(blockingValue([]() -> Awaitable<int> { co_return depth.get(); }), 0);
}

TEST(BlockingValue, MayBeNested)
{
    EXPECT_EQ(blockingValue([]() -> Awaitable<int> { co_return blockingValue(answer) + co_await answer(); }), 84);
}

} // namespace PlatformSupport
