// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <any>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

namespace PlatformSupport {

// What belongs to one task wherever it runs: whether it is cancelled, and the values carried along with it.
// Behind Task, checkCancellation() and TaskLocal; seldom used by itself.
//
// cancel(), isCancelled() and cancellation() may be called from any thread, the rest only by the task itself.
class TaskContext {
public:
    // A stack of values, each under the address of its TaskLocal. Stacks share their lower parts.
    struct Binding {
        const void* key;
        std::any value;
        std::shared_ptr<const Binding> below;
    };

    // The task that runs on this thread now; outside of tasks, a context that belongs to the thread.
    static const std::shared_ptr<TaskContext>& current();

    TaskContext() = default;
    TaskContext(const TaskContext&) = delete;
    TaskContext& operator=(const TaskContext&) = delete;

    // From now on this context is cancelled when `parent` is.
    void followCancellation(const TaskContext& parent);

    // Calls those who wait for it, on this thread, the first time.
    void cancel() { source_.request_stop(); }
    bool isCancelled() const { return source_.stop_requested(); }
    std::stop_token cancellation() const { return source_.get_token(); }

    const std::shared_ptr<const Binding>& bindings() const { return bindings_; }
    void setBindings(std::shared_ptr<const Binding> bindings) { bindings_ = std::move(bindings); }

private:
    std::stop_source source_;
    std::optional<std::stop_callback<std::function<void()>>> parent_;
    std::shared_ptr<const Binding> bindings_;
};

// While it lives, `context` is the current one of this thread.
class CurrentTask {
public:
    explicit CurrentTask(std::shared_ptr<TaskContext> context);
    CurrentTask(const CurrentTask&) = delete;
    CurrentTask& operator=(const CurrentTask&) = delete;
    ~CurrentTask();

private:
    std::shared_ptr<TaskContext> previous_;
};

// Throws CancellationError if the current task is cancelled.
void checkCancellation();
bool isCancelled();

} // namespace PlatformSupport
