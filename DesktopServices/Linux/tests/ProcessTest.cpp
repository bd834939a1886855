// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Programs/Process.h"

#include <PlatformSupport/FileDescriptor.h>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <TemporaryFolder.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <string>

namespace DesktopLinux {

namespace {

namespace fs = std::filesystem;
using PlatformSupport::FileDescriptor;

// A copy of /bin/cat under any name, which runs and waits.
class Sleeper {
public:
    explicit Sleeper(const fs::path& program, std::string variable = "A=b")
    {
        std::array<int, 2> toChild {};
        std::array<int, 2> fromChild {};
        EXPECT_EQ(::pipe2(toChild.data(), O_CLOEXEC), 0);
        EXPECT_EQ(::pipe2(fromChild.data(), O_CLOEXEC), 0);
        fs::copy_file("/bin/cat", program, fs::copy_options::overwrite_existing);
        std::string name = program.string();
        char* const arguments[] { name.data(), nullptr };
        char* const environment[] { variable.data(), nullptr };
        child_ = ::vfork();
        if (child_ == 0) {
            ::dup2(toChild[0], STDIN_FILENO);
            ::dup2(fromChild[1], STDOUT_FILENO);
            ::execve(name.c_str(), arguments, environment);
            ::_exit(127);
        }
        const FileDescriptor childsInput(toChild[0]);
        const FileDescriptor childsOutput(fromChild[1]);
        input_ = FileDescriptor(toChild[1]);
        output_ = FileDescriptor(fromChild[0]);
        char byte = 'x';
        EXPECT_EQ(::write(input_.number(), &byte, 1), 1);
        EXPECT_EQ(::read(output_.number(), &byte, 1), 1); // it has come so far
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
    pid_t child_ = 0;
    FileDescriptor input_;
    FileDescriptor output_;
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
