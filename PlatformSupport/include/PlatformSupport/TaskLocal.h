// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/Precondition.h>
#include <PlatformSupport/TaskContext.h>

#include <any>
#include <memory>
#include <utility>

namespace PlatformSupport {

// A value that goes along with a task, through everything that it awaits and into the tasks that it starts. It
// lives as long as the program.
//
//     const TaskLocal<int> depth { 0 };
//     const TaskLocal<int>::Binding deeper(depth, depth.get() + 1);    // until the end of the block
template <typename T> class TaskLocal {
public:
    explicit TaskLocal(T defaultValue = T())
        : defaultValue_(std::move(defaultValue))
    {
    }
    TaskLocal(const TaskLocal&) = delete;
    TaskLocal& operator=(const TaskLocal&) = delete;

    // What the current task carries; outside of tasks, the thread.
    T get() const
    {
        for (const auto* binding = TaskContext::current()->bindings().get(); binding; binding = binding->below.get()) {
            if (binding->key == this)
                return std::any_cast<const T&>(binding->value);
        }
        return defaultValue_;
    }

    // While it lives, the task that made it carries another value. Ends before any that was there before it.
    class Binding {
    public:
        Binding(const TaskLocal& local, T value)
            : context_(TaskContext::current())
            , binding_(std::make_shared<const TaskContext::Binding>(
                  TaskContext::Binding { &local, std::any(std::move(value)), context_->bindings() }))
        {
            context_->setBindings(binding_);
        }
        Binding(const Binding&) = delete;
        Binding& operator=(const Binding&) = delete;
        ~Binding()
        {
            precondition(context_->bindings() == binding_, "task local bindings end in the wrong order");
            context_->setBindings(binding_->below);
        }

    private:
        std::shared_ptr<TaskContext> context_;
        std::shared_ptr<const TaskContext::Binding> binding_;
    };

    // Awaits the operation with another value.
    template <AsynchronousOperation Operation>
    Awaitable<ResultOf<Operation>> withValue(T value, Operation operation) const
    {
        const Binding binding(*this, std::move(value));
        co_return co_await operation();
    }

private:
    T defaultValue_;
};

} // namespace PlatformSupport
