// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/HostedLoop.h>
#include <PlatformSupport/Task.h>

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <thread>

namespace PlatformSupport {
namespace {

TEST(HostedLoop, AsksItsHostOnceForEachPieceOfWork)
{
    int asked = 0;
    HostedLoop loop([&] { ++asked; });
    bool ran = false;
    const auto work = [&]() -> Awaitable<void> {
        ran = true;
        co_return;
    };
    const auto task = startTask(loop.executor(), work);
    EXPECT_EQ(asked, 1);
    EXPECT_FALSE(ran);
    for (int done = 0; done < asked; ++done)
        loop.runOne();
    EXPECT_TRUE(ran);
}

TEST(HostedLoop, TakesWorkFromOtherThreads)
{
    std::atomic<int> asked = 0;
    HostedLoop loop([&] { ++asked; });
    int sum = 0;
    {
        const std::jthread other([&] {
            for (int i = 1; i <= 100; ++i)
                loop.executor().execute([&sum, i] { sum += i; });
        });
    }
    EXPECT_EQ(asked, 100);
    for (int i = 0; i < 100; ++i)
        loop.runOne();
    EXPECT_EQ(sum, 5050);
}

TEST(HostedLoop, DropsWorkThatComesAfterItsEnd)
{
    int asked = 0;
    auto loop = std::make_optional<HostedLoop>([&] { ++asked; });
    const Executor executor = loop->executor();
    loop.reset();
    executor.execute([] { FAIL(); });
    EXPECT_EQ(asked, 0);
}

} // namespace
} // namespace PlatformSupport
