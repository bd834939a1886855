// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ChildProcess.h"

#include "ProgramLaunch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>
#include <utility>

namespace Sorvane {

using PlatformSupport::FileDescriptor;

namespace {

template <typename Call> auto retriedWhenInterrupted(const Call& call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

// Waits until the output has something or has ended; false when the event came.
bool waitForOutput(const FileDescriptor& output, const FileDescriptor& event)
{
    std::array<pollfd, 2> watched { { { output.number(), POLLIN, 0 }, { event.number(), POLLIN, 0 } } };
    retriedWhenInterrupted([&] { return ::poll(watched.data(), watched.size(), -1); });
    return watched[1].revents == 0;
}

ProcessEnd endFrom(int status)
{
    return WIFEXITED(status) ? ProcessEnd { .exited = true, .status = WEXITSTATUS(status) } : ProcessEnd {};
}

} // namespace

ChildProcess::ChildProcess(Description description)
    : description_(std::move(description))
{
}

void ChildProcess::launch()
{
    killed_ = FileDescriptor(::eventfd(0, EFD_CLOEXEC));
    if (!killed_.isOpen())
        throw std::system_error(errno, std::generic_category(), "cannot watch a process");
    auto launched = launchProgram(description_);
    output_ = std::move(launched.output);
    const std::lock_guard guard(lock_);
    runningAs_ = launched.process;
}

std::optional<std::string> ChildProcess::readOutput(size_t limit)
{
    std::string output;
    std::array<char, size_t { 64 } * 1024> piece {}; // what a pipe holds
    while (waitForOutput(output_, killed_)) {
        const ssize_t count
            = retriedWhenInterrupted([&] { return ::read(output_.number(), piece.data(), piece.size()); });
        if (count <= 0)
            return output;
        if (output.size() + static_cast<size_t>(count) > limit)
            break;
        output.append(piece.data(), static_cast<size_t>(count));
    }
    return std::nullopt;
}

ProcessEnd ChildProcess::waitForExit()
{
    if (runningAs_ == 0)
        return end_;
    // Waits first and collects under the lock: until it is collected its number cannot become another process's.
    siginfo_t ignored {};
    const auto process = static_cast<id_t>(runningAs_);
    const int waited = retriedWhenInterrupted([&] { return ::waitid(P_PID, process, &ignored, WEXITED | WNOWAIT); });

    const std::lock_guard guard(lock_);
    if (waited == 0) {
        signalGroup(SIGKILL);
        int status = 0;
        retriedWhenInterrupted([&] { return ::waitpid(runningAs_, &status, 0); });
        end_ = endFrom(status);
    }
    runningAs_ = 0;
    output_ = FileDescriptor();
    killed_ = FileDescriptor();
    return end_;
}

void ChildProcess::terminate()
{
    const std::lock_guard guard(lock_);
    signalGroup(SIGTERM);
}

void ChildProcess::kill()
{
    const std::lock_guard guard(lock_);
    if (runningAs_ == 0)
        return;
    signalGroup(SIGKILL);
    ::eventfd_write(killed_.number(), 1);
}

// The caller holds the lock.
void ChildProcess::signalGroup(int signal)
{
    if (runningAs_ != 0)
        ::kill(-runningAs_, signal);
}

} // namespace Sorvane
