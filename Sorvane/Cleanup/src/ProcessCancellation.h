// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "ChildProcess.h"

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/Clock.h>

#include <memory>
#include <mutex>

namespace Sorvane {

// Where one run of a tool and its cancellation meet: the run launches, whoever wants it ended cancels, and whichever is
// first, no tool is left running.
//
// Any thread.
class ProcessCancellation {
public:
    // A tool that was asked to terminate is killed when this has passed.
    static constexpr std::chrono::milliseconds grace { 300 };

    // The clock outlives this object; `timers` runs what waits for it.
    ProcessCancellation(PlatformSupport::Executor timers, PlatformSupport::Clock& clock);

    // Errors: CancellationError when cancel() came first, and nothing is launched; std::system_error
    void launch(std::shared_ptr<ChildProcess> process);

    // Ends the process if it was launched. May be called any number of times.
    void cancel();

    bool isCanceled() const;

private:
    PlatformSupport::Executor timers_;
    PlatformSupport::Clock& clock_;

    mutable std::mutex
        lock_; // also held during the launch, so that a cancellation finds the process not there or running
    std::shared_ptr<ChildProcess> process_; // these two under `lock_`
    bool canceled_ = false;
};

} // namespace Sorvane
