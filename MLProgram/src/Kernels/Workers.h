// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

namespace MLProgram {

// The threads that share the work of one kernel. There is one pool in the process.
//
// Whoever has work takes part in it: a thread that the system does not let run holds nobody up, since the others
// take its share. Each begins with indices of its own, the same ones for every job of a size: what one job has left in
// a processor's cache is there for the next. A caller that finds the pool busy with another model's work does its own
// alone.
class Workers {
public:
    // As many as the environment variable MLPROGRAM_THREADS says; otherwise as many as there are processors.
    static Workers& shared();

    explicit Workers(int threads);
    ~Workers();
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    // Threads that take part in run(), the caller among them.
    int count() const noexcept { return static_cast<int>(threads_.size()) + 1; }

    // Calls body(index, worker) once for each index below `tasks`, in any order, on several threads; `worker` is
    // below count(), and no two threads have the same one at the same time. Returns when all calls have returned.
    // The body does not throw and does not call run(). Nothing is allocated.
    template <typename Body> void run(int64_t tasks, const Body& body)
    {
        const auto call = [](const void* context, int64_t index, int worker) {
            (*static_cast<const Body*>(context))(index, worker);
        };
        runJob(tasks, { call, &body });
    }

private:
    struct Job {
        void (*call)(const void* context, int64_t index, int worker) = nullptr;
        const void* context = nullptr;
    };

    // The indices that one thread begins with; others help it when they have done theirs.
    struct alignas(64) Share {
        std::atomic<int64_t> next { 0 };
        int64_t end = 0;
    };

    void runJob(int64_t tasks, const Job& job);
    void work(int worker);
    void workOn(Share& share, int worker);
    void wait(int worker);

    // What is being worked on; written while no thread is inside.
    Job job_;
    std::vector<Share> shares_; // by worker
    int64_t tasksAtATime_ = 1;

    std::atomic<bool> isOpen_ { false }; // threads may enter the work
    std::atomic<int> inside_ { 0 }; // threads that have entered, the caller left out
    std::atomic<uint32_t> round_ { 0 }; // grows with each job; what idle threads wait for
    std::atomic<bool> isStopping_ { false };
    std::mutex busy_;
    std::vector<std::thread> threads_;
};

// body(index, worker) for each index below `tasks`, on all threads of the shared pool if it is worth that.
template <typename Body> void forEachTask(int64_t tasks, bool isWorthThreads, const Body& body)
{
    if (isWorthThreads && tasks > 1)
        return Workers::shared().run(tasks, body);
    for (int64_t i = 0; i < tasks; ++i)
        body(i, 0);
}

} // namespace MLProgram
