// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "CleanupTestbed.h"

#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/SystemClock.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <thread>

namespace Sorvane {

using namespace std::chrono_literals;
using PlatformSupport::CancellationError;
using testing::IsEmpty;

namespace {

constexpr auto processFailed = CleanupFailure::Case::processFailed;

// Time stands still unless a test advances it.
class ProcessEndingTest : public testing::Test {
protected:
    // A run whose tool is ready for signals.
    PlatformSupport::Task<std::string> startRun()
    {
        testbed.announceLife(tool);
        auto run = testbed.start(testbed.generator());
        testbed.loop.turn();
        watch.emplace(tool);
        return run;
    }

    void expectFailure(const PlatformSupport::Task<std::string>& run)
    {
        EXPECT_EQ(failureOf([&] { testbed.loop.finish(run); }), processFailed);
        EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
    }

    PlatformSupport::HandTurnedClock clock;
    ProcessTestbed testbed { clock };
    std::filesystem::path tool = testbed.files().generator();
    std::optional<ToolWatch> watch;
};

bool hasChildren()
{
    return ::waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD;
}

size_t openFiles()
{
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(files), end(files)));
}

} // namespace

TEST_F(ProcessEndingTest, EndsAToolThatTakesTooLong)
{
    testbed.setCase(tool, "wait\nHello");
    const auto run = startRun();
    advanceOnceAsleep(clock, 1, 29'999ms);
    EXPECT_EQ(clock.sleepers(), 1u);
    EXPECT_FALSE(run.isFinished());
    clock.advance(1ms);
    expectFailure(run);
    watch->waitForEnd();
}

TEST_F(ProcessEndingTest, KillsAToolThatWillNotTerminate)
{
    testbed.setCase(tool, "wait-stubbornly\nHello<|im_end|>");
    const auto run = startRun();
    advanceOnceAsleep(clock, 1, 30s);
    advanceOnceAsleep(clock, 1, 299ms);
    EXPECT_EQ(clock.sleepers(), 1u);
    EXPECT_FALSE(run.isFinished());
    clock.advance(1ms);
    expectFailure(run);
    watch->waitForEnd();
}

TEST_F(ProcessEndingTest, EndsAToolThatHasClosedItsOutput)
{
    testbed.setCase(tool, "wait-silently\nHello<|im_end|>");
    const auto run = startRun();
    advanceOnceAsleep(clock, 1, 30s);
    expectFailure(run);
}

TEST_F(ProcessEndingTest, IsNotHeldUpByAChildOfTheToolThatKeepsTheOutput)
{
    testbed.setCase(tool, "leave-child\nHello<|im_end|>");
    const auto run = startRun();
    waitUntilUncollected(testbed.record(tool));
    advanceOnceAsleep(clock, 1, 30s);
    expectFailure(run);
    watch->waitForEnd();
}

TEST_F(ProcessEndingTest, IsNotHeldUpByAChildOfTheToolThatGotAway)
{
    testbed.setCase(tool, "leave-stray-child\nHello<|im_end|>");
    const auto run = startRun();
    waitUntilUncollected(testbed.record(tool));
    advanceOnceAsleep(clock, 1, 30s);
    advanceOnceAsleep(clock, 1, 300ms);
    expectFailure(run);
}

TEST_F(ProcessEndingTest, LeavesNoChildOfTheToolBehind)
{
    testbed.setCase(tool, "leave-quiet-child\nHello<|im_end|>");
    EXPECT_EQ(testbed.loop.finish(startRun()), "Hello<|im_end|>");
    watch->waitForEnd();
}

TEST_F(ProcessEndingTest, StartsNothingOnceCancelled)
{
    const auto run = testbed.start(testbed.generator());
    run.cancel();
    EXPECT_THROW(testbed.loop.finish(run), CancellationError);
    EXPECT_FALSE(testbed.hasRun(tool));
    EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
}

TEST_F(ProcessEndingTest, StartsNothingWhenCancelledBeforeItsTurn)
{
    testbed.setCase(tool, "wait\n");
    const std::vector<PlatformSupport::Task<std::string>> running { startRun(), testbed.start(testbed.generator()),
        testbed.start(testbed.generator()) };
    auto invocation = testbed.generator();
    invocation.executable = testbed.files().tokeniser();
    const auto waiting = testbed.start(invocation);
    testbed.loop.turn();
    waiting.cancel();
    for (const auto& run : running) {
        run.cancel();
        EXPECT_ANY_THROW(testbed.loop.finish(run));
    }
    EXPECT_THROW(testbed.loop.finish(waiting), CancellationError);
    EXPECT_FALSE(testbed.hasRun(invocation.executable));
}

TEST_F(ProcessEndingTest, EndsTheToolWhenItsTaskIsCancelled)
{
    testbed.setCase(tool, "wait\nHello<|im_end|>");
    const auto run = startRun();
    run.cancel();
    expectFailure(run);
    watch->waitForEnd();
}

TEST_F(ProcessEndingTest, DoesNotMindTheTimeLimitAfterACancellation)
{
    testbed.setCase(tool, "wait-stubbornly\n");
    const auto run = startRun();
    run.cancel();
    advanceOnceAsleep(clock, 2, 0s); // the limit's and the kill's
    clock.advance(30s);
    expectFailure(run);
}

TEST_F(ProcessEndingTest, LeavesNothingBehindWheneverItIsCancelled)
{
    testbed.setCase(tool, "print\nHello<|im_end|>");
    const size_t before = openFiles();
    for (int moment = 0; moment < 120; ++moment) {
        const auto run = testbed.start(testbed.generator());
        for (int i = 0; i < moment * moment; ++i) {
            testbed.loop.turn();
            std::this_thread::yield();
        }
        run.cancel();
        try {
            EXPECT_EQ(testbed.loop.finish(run), "Hello<|im_end|>");
        } catch (const CancellationError&) { // before the launch
        } catch (const CleanupFailure& failure) {
            EXPECT_EQ(failure.which(), processFailed);
        }
        EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
    }
    EXPECT_FALSE(hasChildren());
    EXPECT_EQ(openFiles(), before);
}

TEST_F(ProcessEndingTest, LeavesNothingBehindAfterManyRuns)
{
    testbed.setCase(tool, "print\nHello<|im_end|>");
    const size_t before = openFiles();
    for (int i = 0; i < 200; ++i)
        testbed.run(testbed.generator());
    EXPECT_FALSE(hasChildren());
    EXPECT_EQ(openFiles(), before);
    EXPECT_THAT(testbed.temporaryFiles(), IsEmpty());
}

} // namespace Sorvane
