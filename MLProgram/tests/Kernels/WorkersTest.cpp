// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/Workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace MLProgram {

namespace {

TEST(Workers, DoEveryTaskOnce)
{
    Workers workers(4);
    for (int64_t tasks = 0; tasks < 300; ++tasks) {
        std::vector<std::atomic<int>> calls(static_cast<size_t>(tasks));
        workers.run(tasks, [&](int64_t index, int) { ++calls[static_cast<size_t>(index)]; });
        for (const auto& count : calls)
            ASSERT_EQ(count, 1);
    }
}

TEST(Workers, GiveEachThreadANumberOfItsOwn)
{
    Workers workers(3);
    std::vector<std::atomic<int>> present(3);
    std::atomic<bool> haveMet { false };
    for (int round = 0; round < 200; ++round) {
        workers.run(64, [&](int64_t, int worker) {
            if (++present[static_cast<size_t>(worker)] != 1)
                haveMet = true;
            --present[static_cast<size_t>(worker)];
        });
    }
    EXPECT_FALSE(haveMet);
}

TEST(Workers, AloneDoAllTheWorkInTheCaller)
{
    Workers workers(1);
    const std::thread::id caller = std::this_thread::get_id();
    int calls = 0;
    workers.run(10, [&](int64_t, int) { calls += std::this_thread::get_id() == caller ? 1 : 0; });
    EXPECT_EQ(calls, 10);
}

TEST(Workers, LetACallerWorkAloneWhileTheyAreBusy)
{
    Workers workers(2);
    std::atomic<int> calls { 0 };
    std::atomic<bool> isOtherDone { false };
    workers.run(1, [&](int64_t, int) {
        std::thread other([&] {
            workers.run(50, [&](int64_t, int) { ++calls; });
            isOtherDone = true;
        });
        other.join();
    });
    EXPECT_TRUE(isOtherDone);
    EXPECT_EQ(calls, 50);
}

} // namespace

} // namespace MLProgram
