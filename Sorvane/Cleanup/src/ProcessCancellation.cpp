// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ProcessCancellation.h"

#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/Task.h>

#include <utility>

namespace Sorvane {

ProcessCancellation::ProcessCancellation(PlatformSupport::Executor timers, PlatformSupport::Clock& clock)
    : timers_(std::move(timers))
    , clock_(clock)
{
}

void ProcessCancellation::launch(std::shared_ptr<ChildProcess> process)
{
    const std::lock_guard guard(lock_);
    if (canceled_)
        throw PlatformSupport::CancellationError();
    process_ = std::move(process);
    process_->launch();
}

void ProcessCancellation::cancel()
{
    std::shared_ptr<ChildProcess> process;
    {
        const std::lock_guard guard(lock_);
        canceled_ = true;
        if (!process_)
            return;
        process_->terminate();
        process = process_;
    }
    PlatformSupport::startDetachedTask(timers_, [&clock = clock_, process]() -> PlatformSupport::Awaitable<void> {
        co_await clock.sleep(grace);
        process->kill();
    });
}

bool ProcessCancellation::isCanceled() const
{
    const std::lock_guard guard(lock_);
    return canceled_;
}

} // namespace Sorvane
