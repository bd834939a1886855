// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "StatisticsCoding.h"

#include <PlatformSupport/WholeFile.h>
#include <Sorvane/LifetimeStatistics.h>

#include <exception>
#include <filesystem>
#include <vector>

namespace Sorvane {

// The lifetime statistics and their file.
class LifetimeCounters {
public:
    explicit LifetimeCounters(std::filesystem::path file);

    // Takes up what the file holds. If that cannot be read, nothing is ever written over it.
    void read();

    // Notes what a transcript adds, to be counted when the counters are next persisted.
    void note(const LifetimeStatistics::Item& item);

    // Counts what was noted, in the file and in memory.
    //
    // Errors: the read error, or what keeps the file from being written; the statistics stay as they were, and what was
    //         noted is counted another time
    void persist(PlatformSupport::Durability durability);

    const LifetimeStatistics& statistics() const { return statistics_; }
    std::exception_ptr readError() const { return readError_; }

private:
    std::filesystem::path file_;
    LifetimeStatistics statistics_;
    StatisticsText text_; // of `statistics_`
    std::vector<LifetimeStatistics::Item> noted_;
    std::exception_ptr readError_;
};

} // namespace Sorvane
