// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>

#include <exception>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace PlatformSupport {

// How an operation ended: with a value or with an exception. Not synchronised.
template <typename T> class Outcome {
public:
    // Runs the function and keeps its value, or what it throws.
    template <typename Function> void capture(Function&& function)
    {
        try {
            if constexpr (std::is_void_v<T>) {
                std::forward<Function>(function)();
                succeed();
            } else {
                succeed(std::forward<Function>(function)());
            }
        } catch (...) {
            fail(std::current_exception());
        }
    }

    template <typename... Value> void succeed(Value&&... value) { value_.emplace(std::forward<Value>(value)...); }
    void fail(std::exception_ptr error) { error_ = std::move(error); }

    // The value, or the exception thrown again.
    T copy() const
    {
        rethrow();
        if constexpr (!std::is_void_v<T>)
            return *value_;
    }

    T take()
    {
        rethrow();
        if constexpr (!std::is_void_v<T>)
            return std::move(*value_);
    }

private:
    void rethrow() const
    {
        if (error_)
            std::rethrow_exception(error_);
    }

    std::optional<std::conditional_t<std::is_void_v<T>, std::monostate, T>> value_;
    std::exception_ptr error_;
};

// Awaits the operation and keeps its value, or what it throws.
template <typename T, AsynchronousOperation Operation>
Awaitable<void> captureAwaited(Outcome<T>& outcome, Operation& operation)
{
    try {
        if constexpr (std::is_void_v<T>) {
            co_await operation();
            outcome.succeed();
        } else {
            outcome.succeed(co_await operation());
        }
    } catch (...) {
        outcome.fail(std::current_exception());
    }
}

} // namespace PlatformSupport
