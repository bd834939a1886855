// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/Workers.h"

#include <algorithm>
#include <cstdlib>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace MLProgram {

namespace {

// How long an idle thread looks for the next job before it goes to sleep: some ten microseconds, longer than the
// gaps between the steps of a plan. Waking a thread takes about as long.
constexpr int looksBeforeSleep = 2000;

// Indices are taken in chunks, several for each thread, so that a slow one does not keep the others waiting.
constexpr int64_t chunksPerThread = 8;

constexpr int mostThreads = 64;

void pause()
{
#if defined(__SSE2__)
    _mm_pause();
#endif
}

int wantedThreads()
{
    const char* const wanted = std::getenv("MLPROGRAM_THREADS");
    const int number = wanted == nullptr ? 0 : std::atoi(wanted);
    const auto processors = static_cast<int>(std::thread::hardware_concurrency());
    return std::clamp(number > 0 ? number : processors, 1, mostThreads);
}

} // namespace

Workers& Workers::shared()
{
    static Workers workers(wantedThreads());
    return workers;
}

Workers::Workers(int threads)
    : shares_(static_cast<size_t>(threads))
{
    for (int worker = 1; worker < threads; ++worker)
        threads_.emplace_back([this, worker] { wait(worker); });
}

Workers::~Workers()
{
    isStopping_ = true;
    ++round_;
    round_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void Workers::runJob(int64_t tasks, const Job& job)
{
    const std::unique_lock busy(busy_, std::try_to_lock);
    if (!busy.owns_lock() || threads_.empty()) {
        for (int64_t i = 0; i < tasks; ++i)
            job.call(job.context, i, 0);
        return;
    }
    job_ = job;
    for (int64_t i = 0; i < count(); ++i) {
        Share& share = shares_[static_cast<size_t>(i)];
        share.next = tasks * i / count();
        share.end = tasks * (i + 1) / count();
    }
    tasksAtATime_ = std::max<int64_t>(1, tasks / (chunksPerThread * count()));
    isOpen_ = true;
    ++round_;
    round_.notify_all();
    work(0);
    isOpen_ = false;
    for (int looks = 0; inside_ != 0; ++looks) {
        if (looks < looksBeforeSleep)
            pause();
        else
            std::this_thread::yield();
    }
}

void Workers::work(int worker)
{
    for (int i = 0; i < count(); ++i)
        workOn(shares_[static_cast<size_t>((worker + i) % count())], worker);
}

void Workers::workOn(Share& share, int worker)
{
    for (;;) {
        const int64_t first = share.next.fetch_add(tasksAtATime_);
        const int64_t last = std::min(first + tasksAtATime_, share.end);
        if (first >= last)
            return;
        for (int64_t i = first; i < last; ++i)
            job_.call(job_.context, i, worker);
    }
}

// A thread counts itself in before it looks whether the work is open, and the caller closes the work before it looks
// whether anybody is inside: one of the two sees the other.
void Workers::wait(int worker)
{
    uint32_t seen = 0;
    while (!isStopping_) {
        for (int looks = 0; round_ == seen && looks < looksBeforeSleep; ++looks)
            pause();
        round_.wait(seen);
        seen = round_;
        ++inside_;
        if (isOpen_)
            work(worker);
        --inside_;
    }
}

} // namespace MLProgram
