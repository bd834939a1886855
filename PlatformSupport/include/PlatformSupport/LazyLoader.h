// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/SerialExecutor.h>
#include <PlatformSupport/Task.h>

#include <boost/asio/post.hpp>

#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace PlatformSupport {

// Makes a value when it is first asked for: at most once at a time, whoever asks, and again after a failure.
//
// Any thread. The work runs as a task of its own on the given threads, and goes on when those who wait for it are
// cancelled; what it throws reaches all of them. The value is kept for the loader's life and copied to those who ask:
// a large one is a shared pointer.
template <typename Value> class LazyLoader {
public:
    // Called on the loader's own queue, with fractions that only rise; it must not block. The work's own may be called
    // from any thread.
    using Progress = std::function<void(double fraction)>;
    using Work = std::function<Awaitable<Value>(Progress progress)>;

    LazyLoader(Executor threads, Work work)
        : state_(std::make_shared<State>(std::move(threads), std::move(work)))
    {
    }

    // Errors: what the work throws
    Awaitable<Value> value() const
    {
        return onQueue(state_, [state = state_] { return State::value(state); });
    }

    // The same, watched: `progress` is told at once how far the work is, and 1 at its good end.
    Awaitable<Value> run(Progress progress) const
    {
        return onQueue(
            state_, [state = state_, progress = std::move(progress)] { return State::run(state, progress); });
    }

private:
    // Only touched on the queue, but for the queue itself.
    struct State {
        State(Executor executor, Work toDo)
            : threads(executor)
            , queue(std::move(executor))
            , work(std::move(toDo))
        {
        }

        static Awaitable<Value> value(std::shared_ptr<State> state)
        {
            const Task<Value> task = startIfNeeded(state);
            const uint64_t run = state->runs;
            try {
                co_return co_await task.value();
            } catch (...) {
                if (state->runs == run) // the first of those who waited for it
                    state->task.reset();
                throw;
            }
        }

        static Awaitable<Value> run(std::shared_ptr<State> state, Progress progress)
        {
            const Observation observation(*state, progress);
            progress(state->fraction);
            Value result = co_await value(state);
            progress(1.0);
            co_return result;
        }

        static Task<Value> startIfNeeded(const std::shared_ptr<State>& state)
        {
            if (!state->task) {
                state->fraction = 0;
                ++state->runs;
                const auto report = [weak = std::weak_ptr(state)](double fraction) {
                    if (const auto strong = weak.lock())
                        boost::asio::post(strong->queue.executor(), [strong, fraction] { strong->reported(fraction); });
                };
                state->task = startTask(state->threads, [work = state->work, report] { return work(report); });
            }
            return *state->task;
        }

        // Comes before the end of the work, which takes the same queue.
        void reported(double newFraction)
        {
            if (newFraction <= fraction)
                return;
            fraction = newFraction;
            for (const auto& [number, observer] : std::map(observers))
                observer(newFraction);
        }

        Executor threads;
        SerialExecutor queue;
        Work work;
        std::optional<Task<Value>> task; // running or finished, but not failed
        uint64_t runs = 0;
        std::map<int64_t, Progress> observers;
        int64_t nextObserver = 0;
        double fraction = 0;
    };

    // As long as it lives, the callback hears of the work. On the queue.
    class Observation {
    public:
        Observation(State& state, const Progress& progress)
            : state_(state)
            , number_(state.nextObserver++)
        {
            state_.observers.emplace(number_, progress);
        }
        Observation(const Observation&) = delete;
        Observation& operator=(const Observation&) = delete;
        ~Observation() { state_.observers.erase(number_); }

    private:
        State& state_;
        int64_t number_;
    };

    template <typename Operation> static Awaitable<Value> onQueue(std::shared_ptr<State> state, Operation operation)
    {
        co_return co_await state->queue.run(std::move(operation));
    }

    std::shared_ptr<State> state_;
};

} // namespace PlatformSupport
