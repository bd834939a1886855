// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "OtherProgram.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace DesktopLinux {

using PlatformSupport::FileDescriptor;

OtherProgram::OtherProgram()
    : OtherProgram(OtherProgram_PROGRAM)
{
}

OtherProgram::OtherProgram(const std::filesystem::path& executable)
{
    std::array<int, 2> toChild {};
    std::array<int, 2> fromChild {};
    EXPECT_EQ(::pipe2(toChild.data(), O_CLOEXEC), 0);
    EXPECT_EQ(::pipe2(fromChild.data(), O_CLOEXEC), 0);
    std::string path = executable.string();
    process_ = ::vfork();
    if (process_ == 0) {
        ::dup2(toChild[0], STDIN_FILENO);
        ::dup2(fromChild[1], STDOUT_FILENO);
        ::execl(path.c_str(), path.c_str(), nullptr);
        ::_exit(127);
    }
    ::close(toChild[0]); // at once: a program that could not be started then has ended
    ::close(fromChild[1]);
    input_ = FileDescriptor(toChild[1]);
    output_ = FileDescriptor(fromChild[0]);
    EXPECT_EQ(answer(), "ready");
}

OtherProgram::~OtherProgram()
{
    kill();
}

std::string OtherProgram::ask(const std::string& command)
{
    tell(command);
    return answer();
}

void OtherProgram::tell(const std::string& command)
{
    const auto line = command + "\n";
    EXPECT_EQ(::write(input_.number(), line.data(), line.size()), ssize_t(line.size()));
}

std::string OtherProgram::answer()
{
    while (unread_.find('\n') == unread_.npos) {
        std::array<char, 4096> bytes {};
        const auto count = ::read(output_.number(), bytes.data(), bytes.size());
        if (count <= 0)
            return "ended";
        unread_.append(bytes.data(), size_t(count));
    }
    const auto end = unread_.find('\n');
    const auto line = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    return line;
}

void OtherProgram::freeze() const
{
    ::kill(process_, SIGSTOP);
    siginfo_t stopped {};
    while (::waitid(P_PID, id_t(process_), &stopped, WSTOPPED | WNOWAIT) != 0 && errno == EINTR) { }
}

bool OtherProgram::isFrozen() const
{
    siginfo_t stopped {};
    return ::waitid(P_PID, id_t(process_), &stopped, WSTOPPED | WNOWAIT | WNOHANG) == 0 && stopped.si_pid == process_;
}

void OtherProgram::thaw() const
{
    ::kill(process_, SIGCONT);
}

void OtherProgram::kill()
{
    if (process_ == 0)
        return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    process_ = 0;
}

} // namespace DesktopLinux
