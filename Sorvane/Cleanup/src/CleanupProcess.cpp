// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ChildProcess.h"
#include "PrivateDirectory.h"
#include "ProcessCancellation.h"
#include "ToolArguments.h"

#include <PlatformSupport/Precondition.h>
#include <PlatformSupport/Task.h>
#include <PlatformSupport/UTF8.h>
#include <Sorvane/CleanupFailure.h>
#include <Sorvane/CleanupProcess.h>

#include <utility>

namespace Sorvane {

namespace {

namespace fs = std::filesystem;
using PlatformSupport::Awaitable;

// A clean-up, the one before it that is still being ended, and the check of freshly installed tools.
constexpr size_t runsAtATime = 3;

fs::path promptFile(const PrivateDirectory& directory, const std::string& prompt)
{
    try {
        return directory.write("prompt.txt", prompt);
    } catch (const fs::filesystem_error&) {
        throw CleanupFailure(CleanupFailure::Case::processFailed);
    }
}

std::vector<std::string> argumentsOf(const CleanupProcess::Invocation& invocation, const fs::path& prompt)
{
    auto arguments = invocation.arguments ? *invocation.arguments
                                          : generatorArguments(invocation.model, tokenBudget(longestTranscript));
    if (invocation.promptOption == CleanupProcess::PromptOption::append)
        arguments.insert(arguments.end(), { "--binary-file", prompt });
    return arguments;
}

Awaitable<void> cancelAfter(
    PlatformSupport::Clock& clock, PlatformSupport::Clock::Duration limit, std::shared_ptr<ProcessCancellation> run)
{
    co_await clock.sleep(limit);
    run->cancel();
}

// Leaves no process behind, whatever is thrown while it runs.
class EndOfProcess {
public:
    explicit EndOfProcess(ChildProcess& process)
        : process_(process)
    {
    }
    EndOfProcess(const EndOfProcess&) = delete;
    EndOfProcess& operator=(const EndOfProcess&) = delete;
    ~EndOfProcess()
    {
        process_.kill();
        process_.waitForExit();
    }

private:
    ChildProcess& process_;
};

} // namespace

CleanupProcess::CleanupProcess(
    PlatformSupport::Clock& clock, PlatformSupport::UUIDSource& uuids, PlatformSupport::UserFolders folders)
    : clock_(clock)
    , uuids_(uuids)
    , folders_(std::move(folders))
    , timers_(1)
    , threads_(runsAtATime)
{
}

CleanupProcess::~CleanupProcess() = default;

Awaitable<std::string> CleanupProcess::run(Invocation invocation)
{
    PlatformSupport::precondition(invocation.executable.is_absolute(), "a tool is named by a relative path");
    PlatformSupport::checkCancellation();
    const auto cancellation = std::make_shared<ProcessCancellation>(timers_.executor(), clock_);
    const auto shared = std::make_shared<const Invocation>(std::move(invocation));
    const auto operation = [this, shared, cancellation] {
        return threads_.run([this, shared, cancellation] { return runOnThisThread(*shared, cancellation); });
    };
    const auto onCancel = [cancellation] { cancellation->cancel(); };
    co_return co_await PlatformSupport::withCancellationHandler(operation, onCancel);
}

std::string CleanupProcess::runOnThisThread(
    const Invocation& invocation, const std::shared_ptr<ProcessCancellation>& cancellation)
{
    const PrivateDirectory directory(folders_.temporary / ("sorvane-cleanup-" + uuids_.next().text()));
    const auto process = std::make_shared<ChildProcess>(ChildProcess::Description {
        .executable = invocation.executable,
        .arguments = argumentsOf(invocation, promptFile(directory, invocation.prompt)),
        .environment = { "PATH=/usr/bin:/bin", "HOME=" + folders_.home.string(), "LC_ALL=en_US.UTF-8" },
        .workingDirectory = directory.path(),
    });
    cancellation->launch(process);
    const EndOfProcess end(*process);

    const auto timeLimit = PlatformSupport::startDetachedTask(
        timers_.executor(), [&clock = clock_, cancellation, limit = invocation.timeout] {
            return cancelAfter(clock, limit, cancellation);
        });
    const auto output = process->readOutput(longestOutput);
    if (!output)
        process->kill();
    const bool succeeded = process->waitForExit().isSuccess() && !cancellation->isCanceled();
    timeLimit.cancel();
    if (!succeeded || !output || !PlatformSupport::isUTF8(*output))
        throw CleanupFailure(CleanupFailure::Case::processFailed);
    return *output;
}

} // namespace Sorvane
