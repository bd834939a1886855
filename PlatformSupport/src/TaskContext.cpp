// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/TaskContext.h>

#include <utility>

namespace PlatformSupport {

namespace {

std::shared_ptr<TaskContext>& currentOfThread()
{
    thread_local std::shared_ptr<TaskContext> context = std::make_shared<TaskContext>();
    return context;
}

} // namespace

const std::shared_ptr<TaskContext>& TaskContext::current()
{
    return currentOfThread();
}

void TaskContext::followCancellation(const TaskContext& parent)
{
    parent_.emplace(parent.cancellation(), [source = source_]() mutable { source.request_stop(); });
}

CurrentTask::CurrentTask(std::shared_ptr<TaskContext> context)
    : previous_(std::exchange(currentOfThread(), std::move(context)))
{
}

CurrentTask::~CurrentTask()
{
    currentOfThread() = std::move(previous_);
}

void checkCancellation()
{
    if (isCancelled())
        throw CancellationError();
}

bool isCancelled()
{
    return TaskContext::current()->isCancelled();
}

} // namespace PlatformSupport
