// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Programs/Process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <TemporaryFolder.h>
#include <unistd.h>

#include <csignal>
#include <string>

namespace DesktopLinux {

namespace {

namespace fs = std::filesystem;

// A copy of /bin/sleep under any name, running; `environment` ends with null.
class Sleeper {
public:
    explicit Sleeper(const fs::path& program, std::string variable = "A=b")
    {
        fs::copy_file("/bin/sleep", program, fs::copy_options::overwrite_existing);
        std::string name = program.string();
        std::string duration = "1000";
        char* const arguments[] { name.data(), duration.data(), nullptr };
        char* const environment[] { variable.data(), nullptr };
        child_ = ::vfork();
        if (child_ == 0) {
            ::execve(name.c_str(), arguments, environment);
            ::_exit(127);
        }
    }
    ~Sleeper()
    {
        end();
        ::waitpid(child_, nullptr, 0);
    }
    pid_t child() const { return child_; }

    // Has ended, and is not waited for.
    void end() const
    {
        ::kill(child_, SIGKILL);
        siginfo_t ended {};
        ::waitid(P_PID, static_cast<id_t>(child_), &ended, WEXITED | WNOWAIT);
    }

private:
    pid_t child_;
};

TEST(Process, RunsUntilItHasEnded)
{
    const TestSupport::TemporaryFolder folder;
    const Sleeper sleeper(folder / "a) R 1 (b");
    const auto process = runningProcess(sleeper.child());
    ASSERT_TRUE(process);
    EXPECT_TRUE(isRunning(*process));
    sleeper.end();
    EXPECT_FALSE(isRunning(*process)); // although its number is still taken
}

TEST(Process, IsAnotherOneUnderTheSameNumberLater)
{
    auto process = runningProcess(::getpid());
    ASSERT_TRUE(process);
    process->startTime -= 1;
    EXPECT_FALSE(isRunning(*process));
}

TEST(Process, DoesNotExistUnderWrongNumbers)
{
    EXPECT_FALSE(runningProcess(0));
    EXPECT_FALSE(runningProcess(-1));
    EXPECT_FALSE(runningProcess(0x7fffffff));
}

TEST(Process, TellsWhetherABrowserEngineLiesBesideIt)
{
    const TestSupport::TemporaryFolder folder;
    const Sleeper sleeper(folder / "code");
    const auto process = runningProcess(sleeper.child());
    ASSERT_TRUE(process);
    EXPECT_EQ(executableOf(*process), folder / "code");
    EXPECT_FALSE(bringsBrowserEngine(*process));
    folder.write("chrome_100_percent.pak", std::string_view());
    EXPECT_TRUE(bringsBrowserEngine(*process));
    sleeper.end();
    EXPECT_FALSE(bringsBrowserEngine(*process));
}

TEST(Process, TellsTheVariablesThatItWasStartedWith)
{
    const TestSupport::TemporaryFolder folder;
    const Sleeper sleeper(folder / "a", "NAME=x=y");
    const auto process = runningProcess(sleeper.child());
    ASSERT_TRUE(process);
    EXPECT_EQ(startVariable(*process, "NAME"), "x=y");
    EXPECT_EQ(startVariable(*process, "NAM"), std::nullopt);
    EXPECT_EQ(startVariable(*process, "OTHER"), std::nullopt);
}

} // namespace

} // namespace DesktopLinux
