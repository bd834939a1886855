// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ChildProcess.h"

#include "CleanupTestbed.h"
#include "ProcessCancellation.h"

#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/CancellationError.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Sorvane {

using namespace std::chrono_literals;

namespace {

class ChildProcessTest : public testing::Test {
protected:
    std::shared_ptr<ChildProcess> newProcess() const
    {
        return std::make_shared<ChildProcess>(ChildProcess::Description {
            .executable = tool, .arguments = {}, .environment = {}, .workingDirectory = testbed.files().directory });
    }

    PlatformSupport::HandTurnedClock clock;
    PlatformSupport::BlockingPool timers { 1 };
    CleanupTestbed testbed;
    std::filesystem::path tool = testbed.files().generator();
    ProcessCancellation cancellation { timers.executor(), clock };
};

} // namespace

TEST_F(ChildProcessTest, SaysHowItEnded)
{
    for (const int status : { 0, 1, 255 }) {
        testbed.setCase(tool, "exit " + std::to_string(status));
        const auto process = newProcess();
        process->launch();
        const auto end = process->waitForExit();
        EXPECT_TRUE(end.exited);
        EXPECT_EQ(end.status, status);
        EXPECT_EQ(process->waitForExit().status, status);
    }
    testbed.setCase(tool, "die");
    const auto process = newProcess();
    process->launch();
    EXPECT_FALSE(process->waitForExit().exited);
}

TEST_F(ChildProcessTest, GivesNoMoreOutputThanAsked)
{
    testbed.setCase(tool, "print\n12345678");
    for (const size_t limit : { 8, 7 }) {
        const auto process = newProcess();
        process->launch();
        EXPECT_EQ(process->readOutput(limit), limit == 8 ? std::optional<std::string>("12345678") : std::nullopt);
        process->waitForExit();
    }
}

TEST_F(ChildProcessTest, DoesNotMindSignalsWhenItDoesNotRun)
{
    const auto process = newProcess();
    process->terminate();
    process->kill();
    testbed.setCase(tool, "exit 0");
    process->launch();
    EXPECT_TRUE(process->waitForExit().isSuccess());
    process->terminate();
    process->kill();
}

TEST_F(ChildProcessTest, DiesWithItsParent)
{
    testbed.setCase(tool, "wait\n");
    testbed.announceLife(tool);
    const auto process = newProcess();
    const pid_t parent = ::fork();
    const auto liveAsParent = [&]() noexcept {
        process->launch();
        ::pause();
    };
    if (parent == 0)
        liveAsParent();
    const ToolWatch watch(tool);
    ::kill(parent, SIGKILL);
    watch.waitForEnd();
    EXPECT_EQ(::waitpid(parent, nullptr, 0), parent);
}

TEST_F(ChildProcessTest, IsNotLaunchedAfterACancellation)
{
    const auto process = newProcess();
    cancellation.cancel();
    cancellation.cancel();
    EXPECT_TRUE(cancellation.isCanceled());
    EXPECT_THROW(cancellation.launch(process), PlatformSupport::CancellationError);
    EXPECT_FALSE(testbed.hasRun(tool));
    EXPECT_EQ(clock.sleepers(), 0u);
}

TEST_F(ChildProcessTest, IsLeftAloneWhenItEndsBeforeItIsKilled)
{
    testbed.setCase(tool, "wait\nsome text");
    testbed.announceLife(tool);
    const auto process = newProcess();
    cancellation.launch(process);
    const ToolWatch watch(tool);
    cancellation.cancel();
    EXPECT_TRUE(process->readOutput(100).has_value());
    EXPECT_FALSE(process->waitForExit().exited);
    advanceOnceAsleep(clock, 1, 300ms);
    cancellation.cancel();
}

TEST_F(ChildProcessTest, IsNotThereWhenItsProgramCannotBeStarted)
{
    const auto expectError = [&](std::errc error) {
        try {
            newProcess()->launch();
            ADD_FAILURE() << "started";
        } catch (const std::system_error& thrown) {
            EXPECT_EQ(thrown.code(), error);
        }
    };
    tool = testbed.files().weights();
    expectError(std::errc::permission_denied);
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    expectError(std::errc::executable_format_error);
    tool = testbed.files().directory;
    expectError(std::errc::permission_denied);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
}

} // namespace Sorvane
