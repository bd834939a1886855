// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/Clock.h>
#include <PlatformSupport/UserFolders.h>
#include <PlatformSupport/UUID.h>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Sorvane {

class ProcessCancellation;

// Runs command-line tools, each as a child process with a time limit and nothing of this program's own: no inherited
// environment, no open files, no words on its command line. What it is to read lies in a file of a private directory,
// which is also where it runs and which is gone when the run is over.
//
// One object serves the application. Runs may go on side by side, from any thread. It is given up once they have ended:
// the destructor waits for tools that still run.
class CleanupProcess {
public:
    // Whether the tool is told where its prompt lies, by "--binary-file" and the path at the end of its arguments.
    enum class PromptOption { leaveOut, append };

    struct Invocation {
        std::filesystem::path executable; // absolute
        std::filesystem::path model; // used by the default arguments alone
        std::string prompt;
        PlatformSupport::Clock::Duration timeout; // from launch to exit
        std::optional<std::vector<std::string>> arguments; // without them, the generator's for the longest transcript
        PromptOption promptOption = PromptOption::append;
    };

    // A tool may not write more than this; a cleaned transcript has some kilobytes.
    static constexpr size_t longestOutput = size_t { 16 } * 1024 * 1024; // bytes

    // Both outlive this object.
    CleanupProcess(PlatformSupport::Clock& clock, PlatformSupport::UUIDSource& uuids,
        PlatformSupport::UserFolders folders = PlatformSupport::UserFolders::fromEnvironment());
    CleanupProcess(const CleanupProcess&) = delete;
    CleanupProcess& operator=(const CleanupProcess&) = delete;
    ~CleanupProcess();

    // What the tool wrote to its standard output, which is UTF-8. A tool that does not end in time, or whose task is
    // cancelled, is asked to terminate and is killed 0.3 seconds later.
    //
    // Errors: CancellationError   when the task was cancelled before the tool was started
    //         CleanupFailure      processFailed, for all that happens to the tool once it runs
    //         std::filesystem::filesystem_error when there can be no private directory
    //         std::system_error   when the tool cannot be started
    PlatformSupport::Awaitable<std::string> run(Invocation invocation);

private:
    std::string runOnThisThread(const Invocation& invocation, const std::shared_ptr<ProcessCancellation>& cancellation);

    PlatformSupport::Clock& clock_;
    PlatformSupport::UUIDSource& uuids_;
    PlatformSupport::UserFolders folders_;

    // Time limits have a thread of their own, so that they are kept however many tools run, and it goes last.
    PlatformSupport::BlockingPool timers_;
    PlatformSupport::BlockingPool threads_;
};

} // namespace Sorvane
