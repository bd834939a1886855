// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/TaskContext.h>

#include <memory>

namespace PlatformSupport::Detail {

// Lets a coroutine run on the executor, as part of the task that the context belongs to. It begins later, never
// inside this call, and throws nothing. Behind Task and runOn().
void spawn(const Executor& executor, std::shared_ptr<TaskContext> context, Awaitable<void> work);

} // namespace PlatformSupport::Detail
