// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/FileDescriptor.h>

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace Sorvane {

// How a process ended.
struct ProcessEnd {
    bool exited = false; // by itself, not by a signal
    int status = -1; // what it exited with

    bool isSuccess() const { return exited && status == 0; }
};

// One command-line tool as a child of this process. It inherits nothing: neither files nor environment nor signal
// settings; its input and its error output are the null device. It leads a process group of its own, leaves no core
// file, and dies with the thread that launched it.
//
// launch(), readOutput() and waitForExit() belong to one thread, which lives as long as the child; terminate() and
// kill() may come from any other.
class ChildProcess {
public:
    struct Description {
        std::filesystem::path executable; // absolute; also its name for itself
        std::vector<std::string> arguments; // without that name
        std::vector<std::string> environment; // "NAME=value"
        std::filesystem::path workingDirectory;
    };

    explicit ChildProcess(Description description);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Returns once the tool itself runs. Errors: std::system_error
    void launch();

    // Waits until nobody can write any more and gives all that was written. Nothing, at once, when it is more than
    // `limit` bytes or kill() is called.
    std::optional<std::string> readOutput(size_t limit);

    // Then kills what the tool has left behind in its group. Asked again, it gives the same.
    ProcessEnd waitForExit();

    // Asks the tool and its group to end. Nothing happens unless it runs.
    void terminate();

    // Ends them, and the reading of output even where somebody else still holds the pipe.
    void kill();

private:
    void signalGroup(int signal);

    Description description_;
    PlatformSupport::FileDescriptor output_; // reading end
    ProcessEnd end_;

    std::mutex lock_; // under which the other threads find these two, and they change
    pid_t runningAs_ = 0; // 0 unless the process exists, so that no other is ever signalled
    PlatformSupport::FileDescriptor killed_; // an event, readable from kill() on
};

} // namespace Sorvane
