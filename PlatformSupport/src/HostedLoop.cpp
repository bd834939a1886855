// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WorkQueue.h"

#include <PlatformSupport/HostedLoop.h>

#include <utility>

namespace PlatformSupport {

HostedLoop::HostedLoop(std::function<void()> askHost)
    : work_(std::make_shared<WorkQueue>(std::move(askHost)))
{
}

HostedLoop::~HostedLoop()
{
    work_->close();
}

Executor HostedLoop::executor()
{
    return work_->executor();
}

void HostedLoop::runOne()
{
    work_->runOne();
}

} // namespace PlatformSupport
