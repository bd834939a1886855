// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PeriodComponents.h"
#include "RunningInterval.h"
#include "WordSum.h"

#include <Sorvane/TranscriptStatistics.h>

#include <algorithm>
#include <unordered_map>

namespace Sorvane::TranscriptStatistics {

namespace {

using Date = Calendar::Date;
using Interval = Calendar::Interval;

// From the month of the first activity to that of the last; `date` counts as activity.
std::optional<Interval> lifetimeRange(const std::vector<Activity>& activity, Date date, const Calendar& calendar)
{
    Date oldest = date;
    Date newest = date;
    for (const auto& one : activity) {
        oldest = std::min(oldest, one.date);
        newest = std::max(newest, one.date);
    }
    const auto first = calendar.interval(Calendar::Component::month, oldest);
    const auto last = calendar.interval(Calendar::Component::month, newest);
    return first && last ? std::optional(Interval { first->start, last->end }) : std::nullopt;
}

// The words by the start of their bucket.
std::unordered_map<Date::rep, int64_t> wordsByStart(
    const std::vector<Activity>& activity, const Interval& range, RunningInterval bucket)
{
    std::unordered_map<Date::rep, int64_t> words;
    for (const auto& one : activity) {
        if (!range.contains(one.date))
            continue;
        if (const auto interval = bucket.around(one.date)) {
            int64_t& sum = words[interval->start.time_since_epoch().count()];
            sum = wordSum(sum, one.words);
        }
    }
    return words;
}

} // namespace

std::vector<Bucket> buckets(const std::vector<Activity>& activity, Period period, Date date, const Calendar& calendar)
{
    const auto [length, width] = componentsOf(period);
    const auto range
        = period == Period::lifetime ? lifetimeRange(activity, date, calendar) : calendar.interval(length, date);
    if (!range)
        return {};

    const auto words = wordsByStart(activity, *range, RunningInterval(calendar, width));
    std::vector<Bucket> buckets;
    for (Date cursor = range->start; cursor < range->end;) {
        const auto interval = calendar.interval(width, cursor);
        if (!interval || interval->end <= cursor)
            break; // an oddity of the calendar, which must not go on for ever
        const auto found = words.find(interval->start.time_since_epoch().count());
        buckets.push_back({ interval->start, interval->end, found == words.end() ? 0 : found->second });
        cursor = interval->end;
    }
    return buckets;
}

} // namespace Sorvane::TranscriptStatistics
