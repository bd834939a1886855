// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/CancellationError.h>
#include <PlatformSupport/Outcome.h>
#include <PlatformSupport/Spawn.h>
#include <PlatformSupport/Suspension.h>
#include <PlatformSupport/TaskContext.h>

#include <boost/asio/this_coro.hpp>

#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <utility>
#include <vector>

namespace PlatformSupport {

namespace Detail {

// What a task's handles and its coroutine share, but for the value. Any thread.
class TaskState {
public:
    explicit TaskState(std::shared_ptr<TaskContext> context)
        : context_(std::move(context))
    {
    }

    const std::shared_ptr<TaskContext>& context() const { return context_; }
    bool isFinished() const;

    // The outcome stands before this is called.
    void finish();

    // Goes on once the task is finished.
    static Awaitable<void> untilFinished(std::shared_ptr<TaskState> state);

private:
    void resumeWhenFinished(const Resumer& waiter);

    std::shared_ptr<TaskContext> context_;
    mutable std::mutex lock_;
    bool finished_ = false;
    std::vector<Resumer> waiters_;
};

template <typename T> struct TaskStateOf : TaskState {
    using TaskState::TaskState;
    Outcome<T> outcome;
};

// Held by the coroutine, or by what will start it: if they are destroyed before the end, as when their loop ends,
// whoever waits for the task is not left waiting.
template <typename T> class TaskEnding {
public:
    explicit TaskEnding(std::shared_ptr<TaskStateOf<T>> state)
        : state_(std::move(state))
    {
    }
    TaskEnding(TaskEnding&&) noexcept = default;
    TaskEnding& operator=(TaskEnding&&) = delete;
    ~TaskEnding()
    {
        if (!state_)
            return;
        outcome().fail(std::make_exception_ptr(CancellationError()));
        finish();
    }

    Outcome<T>& outcome() { return state_->outcome; }
    void finish() { std::exchange(state_, nullptr)->finish(); }

private:
    std::shared_ptr<TaskStateOf<T>> state_;
};

// The task's whole life.
template <typename T, typename Operation> Awaitable<void> runTask(Operation operation, TaskEnding<T> ending)
{
    co_await captureAwaited(ending.outcome(), operation);
    ending.finish();
}

} // namespace Detail

// A handle to a piece of asynchronous work that goes on by itself. Copies mean the same task. Letting go of all
// handles neither cancels nor ends it.
//
// Any thread.
template <typename T = void> class Task {
public:
    explicit Task(std::shared_ptr<Detail::TaskStateOf<T>> state)
        : state_(std::move(state))
    {
    }

    // Asks the task to end: checkCancellation() throws in it from now on, a sleep in it ends at once, and
    // its children are cancelled too. A finished task does not mind.
    void cancel() const { state_->context()->cancel(); }
    bool isCancelled() const { return state_->context()->isCancelled(); }
    bool isFinished() const { return state_->isFinished(); }

    // Waits for the task's end and gives a copy of its value, or throws what it threw. The waiter's own cancellation
    // does not cut the wait short, but reaches the task if it is a child. A task whose loop ended before
    // it did counts as cancelled.
    Awaitable<T> value() const { return valueOf(state_); }

private:
    static Awaitable<T> valueOf(std::shared_ptr<Detail::TaskStateOf<T>> state)
    {
        co_await Detail::TaskState::untilFinished(state);
        co_return state->outcome.copy();
    }

    std::shared_ptr<Detail::TaskStateOf<T>> state_;
};

namespace Detail {

template <AsynchronousOperation Operation>
Task<ResultOf<Operation>> start(const Executor& executor, std::shared_ptr<TaskContext> context, Operation operation)
{
    using T = ResultOf<Operation>;
    const auto state = std::make_shared<TaskStateOf<T>>(context);
    spawn(executor, std::move(context), runTask<T>(std::move(operation), TaskEnding<T>(state)));
    return Task<T>(state);
}

} // namespace Detail

// Starts work of its own on an executor. It begins later, never inside this call. It carries the values of the
// TaskLocals that the current task carries now, but its cancellation is its own.
template <AsynchronousOperation Operation>
Task<ResultOf<Operation>> startTask(const Executor& executor, Operation operation)
{
    auto context = std::make_shared<TaskContext>();
    context->setBindings(TaskContext::current()->bindings());
    return Detail::start(executor, std::move(context), std::move(operation));
}

// The same for a child of the current task: cancelling the parent cancels it.
template <AsynchronousOperation Operation>
Task<ResultOf<Operation>> startChildTask(const Executor& executor, Operation operation)
{
    auto context = std::make_shared<TaskContext>();
    context->setBindings(TaskContext::current()->bindings());
    context->followCancellation(*TaskContext::current());
    return Detail::start(executor, std::move(context), std::move(operation));
}

// The same for work that has nothing to do with the current task.
template <AsynchronousOperation Operation>
Task<ResultOf<Operation>> startDetachedTask(const Executor& executor, Operation operation)
{
    return Detail::start(executor, std::make_shared<TaskContext>(), std::move(operation));
}

// Runs the operation, as part of the current task, and calls `onCancel` when that is cancelled meanwhile: on the
// cancelling thread, at most once, and before anything else if it is cancelled already.
template <AsynchronousOperation Operation>
Awaitable<ResultOf<Operation>> withCancellationHandler(Operation operation, std::function<void()> onCancel)
{
    const std::stop_callback registration(TaskContext::current()->cancellation(), std::move(onCancel));
    co_return co_await operation();
}

// Runs the operation out of reach of the current task's cancellation, and waits for its end.
template <AsynchronousOperation Operation> Awaitable<ResultOf<Operation>> withoutCancellation(Operation operation)
{
    const Executor executor = co_await boost::asio::this_coro::executor;
    const auto task = startTask(executor, std::move(operation));
    co_return co_await task.value();
}

} // namespace PlatformSupport
