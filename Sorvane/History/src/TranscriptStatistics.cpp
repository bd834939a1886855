// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PeriodComponents.h"
#include "WholeSeconds.h"
#include "WordSum.h"

#include <PlatformSupport/Precondition.h>
#include <Regex/Letters.h>
#include <Regex/Words.h>
#include <Sorvane/RawValue.h>
#include <Sorvane/TranscriptStatistics.h>

#include <algorithm>
#include <cmath>

namespace Sorvane::TranscriptStatistics {

std::string Summary::recordingTimeLabel() const
{
    constexpr int64_t minute = 60;
    constexpr int64_t hour = 60 * minute;
    const int64_t seconds = wholeSeconds(recordingTime);
    if (seconds >= hour)
        return std::to_string(seconds / hour) + "h " + std::to_string(seconds % hour / minute) + "m";
    if (seconds >= minute)
        return std::to_string(seconds / minute) + "m " + std::to_string(seconds % minute) + "s";
    return std::to_string(seconds) + "s";
}

std::string_view rawValue(Period period)
{
    switch (period) {
    case Period::today:
        return "today";
    case Period::week:
        return "week";
    case Period::month:
        return "month";
    case Period::lifetime:
        return "lifetime";
    }
    PlatformSupport::fatalError("no such period");
}

std::optional<Period> period(std::string_view rawValue)
{
    return caseWithRawValue(allPeriods, rawValue);
}

int64_t wordCount(std::string_view text)
{
    return std::ranges::count_if(
        Regex::words(text), [](const auto& word) { return Regex::containsLetterOrNumber(word.text); });
}

Summary summary(
    const TranscriptList& entries, Period period, PlatformSupport::Clock::Date date, const Calendar& calendar)
{
    std::optional<Calendar::Interval> interval;
    if (period != Period::lifetime) {
        interval = calendar.interval(componentsOf(period).length, date);
        if (!interval)
            return {};
    }
    Summary summary;
    for (const auto& entry : entries) {
        if (interval && !interval->contains(entry.createdAt))
            continue;
        ++summary.transcripts;
        summary.words = wordSum(summary.words, wordCount(entry.text));
        summary.recordingTime += std::isfinite(entry.duration) ? std::max(entry.duration, 0.0) : 0;
    }
    return summary;
}

std::vector<Activity> activity(const TranscriptList& entries)
{
    std::vector<Activity> activity;
    activity.reserve(entries.size());
    for (const auto& entry : entries)
        activity.push_back({ entry.createdAt, wordCount(entry.text) });
    return activity;
}

} // namespace Sorvane::TranscriptStatistics
