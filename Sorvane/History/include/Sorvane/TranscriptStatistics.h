// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>
#include <Sorvane/Calendar.h>
#include <Sorvane/TranscriptEntry.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Counts over transcripts: pure functions, on any thread. Dates are cut by the calendar that is passed in.
namespace Sorvane::TranscriptStatistics {

struct Summary {
    int64_t words = 0;
    int64_t transcripts = 0;
    double recordingTime = 0; // seconds

    bool operator==(const Summary&) const = default;

    // In whole seconds, in the two largest units: "2h 5m", "12m 3s", "41s".
    std::string recordingTimeLabel() const;
};

// The words of one moment.
struct Activity {
    PlatformSupport::Clock::Date date;
    int64_t words = 0;

    bool operator==(const Activity&) const = default;
};

// One bar of the activity chart, identified by its start.
struct Bucket {
    PlatformSupport::Clock::Date start;
    PlatformSupport::Clock::Date end; // behind its last moment
    int64_t words = 0;

    bool operator==(const Bucket&) const = default;
};

// What the figures are taken over. The chart of a day has a bar for each hour, that of a week or a month for each day,
// and that of all time for each month.
enum class Period { today, week, month, lifetime };

inline constexpr std::array allPeriods { Period::today, Period::week, Period::month, Period::lifetime };

// As stored: "today", "week", "month", "lifetime".
std::string_view rawValue(Period period);
std::optional<Period> period(std::string_view rawValue);

// Words by the rules of no particular language. What holds neither a letter nor a digit is none.
int64_t wordCount(std::string_view text);

// Over the entries of the day, week or month that holds `date`; over all for the lifetime.
Summary summary(
    const TranscriptList& entries, Period period, PlatformSupport::Clock::Date date, const Calendar& calendar);

// One for each entry, in their order.
std::vector<Activity> activity(const TranscriptList& entries);

// The bars of the period that holds `date`, without a gap, those without words included. The lifetime goes from the
// month of the first activity to that of the last, and holds the month of `date` in any case.
std::vector<Bucket> buckets(
    const std::vector<Activity>& activity, Period period, PlatformSupport::Clock::Date date, const Calendar& calendar);

} // namespace Sorvane::TranscriptStatistics
