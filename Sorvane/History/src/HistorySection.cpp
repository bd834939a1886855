// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RunningInterval.h"

#include <PlatformSupport/Precondition.h>
#include <Sorvane/HistorySection.h>

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

namespace Sorvane {

namespace {

using Date = Calendar::Date;
using Kind = HistorySection::Kind;

// Today and the days before it at which the sections end.
struct Days {
    Date today;
    Date yesterday;
    Date sevenDaysAgo;
    Date thirtyDaysAgo;

    static std::optional<Days> around(Date now, const Calendar& calendar)
    {
        const auto today = calendar.startOfDay(now);
        const auto yesterday = daysBefore(today, 1, calendar);
        const auto sevenDaysAgo = daysBefore(today, 7, calendar);
        const auto thirtyDaysAgo = daysBefore(today, 30, calendar);
        if (!yesterday || !sevenDaysAgo || !thirtyDaysAgo)
            return std::nullopt;
        return Days { *today, *yesterday, *sevenDaysAgo, *thirtyDaysAgo };
    }

    // The start of that day, which need not be the time of day at which today starts.
    static std::optional<Date> daysBefore(std::optional<Date> today, int days, const Calendar& calendar)
    {
        const auto moved = today ? calendar.movedByDays(*today, -days) : std::nullopt;
        return moved ? calendar.startOfDay(*moved) : std::nullopt;
    }

    Kind kindOf(Date day) const
    {
        if (day > today)
            return Kind::upcoming;
        if (day == today)
            return Kind::today;
        if (day == yesterday)
            return Kind::yesterday;
        if (day >= sevenDaysAgo)
            return Kind::previous7Days;
        return day >= thirtyDaysAgo ? Kind::previous30Days : Kind::month;
    }
};

std::string titleOf(const HistorySection::ID& id, Date now, const Calendar& calendar)
{
    switch (id.kind) {
    case Kind::month:
        return calendar.isSameYear(id.month, now) ? calendar.monthName(id.month) : calendar.monthAndYear(id.month);
    case Kind::upcoming:
        return "Upcoming";
    case Kind::today:
        return "Today";
    case Kind::yesterday:
        return "Yesterday";
    case Kind::previous7Days:
        return "Previous 7 Days";
    case Kind::previous30Days:
        return "Previous 30 Days";
    }
    PlatformSupport::fatalError("no such section");
}

// Says in which section an entry belongs: none if the calendar knows no day or month for it.
class Sorter {
public:
    Sorter(const Days& days, const Calendar& calendar)
        : days_(days)
        , day_(calendar, Calendar::Component::day)
        , month_(calendar, Calendar::Component::month)
    {
    }

    std::optional<HistorySection::ID> sectionOf(const TranscriptEntry& entry)
    {
        const auto day = day_.around(entry.createdAt);
        if (!day)
            return std::nullopt;
        const Kind kind = days_.kindOf(day->start);
        if (kind != Kind::month)
            return HistorySection::ID { kind };
        const auto month = month_.around(entry.createdAt);
        return month ? std::optional(HistorySection::ID { kind, month->start }) : std::nullopt;
    }

private:
    const Days& days_;
    RunningInterval day_;
    RunningInterval month_;
};

// Of the same moment, the one with the lower id is first in either order.
bool isBefore(const TranscriptEntry& a, const TranscriptEntry& b, HistoryOrder order)
{
    if (a.createdAt == b.createdAt)
        return a.id < b.id;
    return order == HistoryOrder::newestFirst ? a.createdAt > b.createdAt : a.createdAt < b.createdAt;
}

} // namespace

std::vector<HistorySection> HistorySection::grouped(
    const TranscriptList& entries, HistoryOrder order, Date now, const Calendar& calendar)
{
    const auto days = Days::around(now, calendar);
    if (!days)
        return {};
    std::map<ID, std::vector<TranscriptEntry>> groups;
    Sorter sorter(*days, calendar);
    for (const auto& entry : entries) {
        if (const auto id = sorter.sectionOf(entry))
            groups[*id].push_back(entry);
    }

    const auto before = [order](const auto& a, const auto& b) { return isBefore(a, b, order); };
    std::vector<HistorySection> sections;
    for (auto& [id, group] : groups) {
        std::ranges::sort(group, before);
        sections.push_back({ id, titleOf(id, now, calendar), std::move(group) });
    }
    std::ranges::sort(sections, [&](const auto& a, const auto& b) { return before(a.entries[0], b.entries[0]); });
    return sections;
}

} // namespace Sorvane
