// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WorkQueue.h"

#include <PlatformSupport/HandTurnedLoop.h>

namespace PlatformSupport {

HandTurnedLoop::HandTurnedLoop()
    : work_(std::make_shared<WorkQueue>())
{
}

HandTurnedLoop::~HandTurnedLoop()
{
    work_->close();
}

Executor HandTurnedLoop::executor()
{
    return work_->executor();
}

size_t HandTurnedLoop::turn()
{
    size_t steps = 0;
    while (work_->runOne())
        ++steps;
    return steps;
}

void HandTurnedLoop::turnUntil(const std::function<bool()>& condition)
{
    while (!condition())
        work_->waitAndRunOne();
}

} // namespace PlatformSupport
