// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>

#include <concepts>
#include <type_traits>

namespace PlatformSupport {

// Where code runs: the main loop, a pool, or an object's own queue. Loops and pools may go while their executors
// are still about: what comes to them later is dropped.
using Executor = boost::asio::any_io_executor;

// What a coroutine returns that can be waited for with co_await. It starts when it is awaited.
//
// Give a lambda that captures objects by value a name before the co_await that uses it: g++ 12 destroys the
// captures of a lambda written inside the co_await expression twice.
//
//     const auto work = [file] { return file->read(); };
//     co_await pool.run(work);
template <typename T = void> using Awaitable = boost::asio::awaitable<T>;

namespace Detail {

template <typename T> struct AwaitedResult {
    using type = T;
    static constexpr bool isAwaitable = false;
};

template <typename T> struct AwaitedResult<Awaitable<T>> {
    using type = T;
    static constexpr bool isAwaitable = true;
};

} // namespace Detail

// An operation is a callable without arguments: a coroutine, or a plain function where that is allowed.
// ResultOf is what comes out in the end.
template <typename Operation> using ResultOf = typename Detail::AwaitedResult<std::invoke_result_t<Operation&>>::type;

template <typename Operation>
concept AsynchronousOperation = Detail::AwaitedResult<std::invoke_result_t<Operation&>>::isAwaitable;

} // namespace PlatformSupport
