// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HistoryTesting.h"

#include <Sorvane/Calendar.h>

#include <gmock/gmock.h>

using namespace Sorvane;
using namespace std::chrono_literals;

namespace {

using Component = Calendar::Component;
using Interval = Calendar::Interval;

Interval between(const char* start, const char* end)
{
    return { utc(start), utc(end) };
}

} // namespace

TEST(Calendar, CutsTimeInItsZone)
{
    const Calendar calendar("de_DE", "Europe/Berlin");
    const auto date = utc("2026-01-14 23:30:15") + 250ms; // half past midnight, Thursday
    EXPECT_EQ(calendar.interval(Component::hour, date), between("2026-01-14 23:00:00", "2026-01-15 00:00:00"));
    EXPECT_EQ(calendar.interval(Component::day, date), between("2026-01-14 23:00:00", "2026-01-15 23:00:00"));
    EXPECT_EQ(calendar.interval(Component::weekOfYear, date), between("2026-01-11 23:00:00", "2026-01-18 23:00:00"));
    EXPECT_EQ(calendar.interval(Component::month, date), between("2025-12-31 23:00:00", "2026-01-31 23:00:00"));
    EXPECT_EQ(calendar.startOfDay(date), utc("2026-01-14 23:00:00"));
    EXPECT_EQ(calendar.movedByDays(date, -15), utc("2025-12-30 23:30:15") + 250ms);
}

TEST(Calendar, TakesAnIntervalsStartAndNotItsEndForInside)
{
    const Calendar calendar("en_US", "UTC");
    for (const auto component : { Component::hour, Component::day, Component::weekOfYear, Component::month }) {
        const auto interval = calendar.interval(component, utc("2026-03-01 12:00:00")).value();
        EXPECT_EQ(calendar.interval(component, interval.start), interval);
        EXPECT_EQ(calendar.interval(component, interval.end - 1ns), interval);
        EXPECT_EQ(calendar.interval(component, interval.end)->start, interval.end);
    }
}

TEST(Calendar, BeginsTheWeekAsTheRegionDoes)
{
    const auto sunday = utc("2026-01-18 12:00:00");
    EXPECT_EQ(Calendar("en_US", "UTC").interval(Component::weekOfYear, sunday)->start, utc("2026-01-18 00:00:00"));
    EXPECT_EQ(Calendar("en_GB", "UTC").interval(Component::weekOfYear, sunday)->start, utc("2026-01-12 00:00:00"));
}

TEST(Calendar, KnowsDaysOfAnotherLength)
{
    const Calendar calendar("en_GB", "Europe/Berlin");
    const auto spring = calendar.interval(Component::day, utc("2026-03-29 12:00:00")).value();
    EXPECT_EQ(spring.end - spring.start, 23h);
    const auto autumn = calendar.interval(Component::day, utc("2026-10-25 12:00:00")).value();
    EXPECT_EQ(autumn.end - autumn.start, 25h);
    // Two o'clock comes twice; each is an hour of its own.
    EXPECT_EQ(calendar.interval(Component::hour, utc("2026-10-25 00:30:00")),
        between("2026-10-25 00:00:00", "2026-10-25 01:00:00"));
    EXPECT_EQ(calendar.interval(Component::hour, utc("2026-10-25 01:30:00")),
        between("2026-10-25 01:00:00", "2026-10-25 02:00:00"));
    const auto week = calendar.interval(Component::weekOfYear, utc("2026-03-29 12:00:00")).value();
    EXPECT_EQ(week.end - week.start, 7 * 24h - 1h);
}

TEST(Calendar, BeginsADayWithoutAMidnightAtItsFirstMoment)
{
    // Clocks go from midnight to one o'clock.
    const Calendar beirut("en_US", "Asia/Beirut");
    const auto day = beirut.interval(Component::day, utc("2022-03-27 12:00:00")).value();
    EXPECT_EQ(day, between("2022-03-26 22:00:00", "2022-03-27 21:00:00"));
    EXPECT_EQ(beirut.startOfDay(day.start), day.start);
    EXPECT_EQ(beirut.startOfDay(day.start - 1s), utc("2022-03-25 22:00:00"));
    // Midnight comes twice: clocks go from one o'clock to midnight.
    const Calendar havana("en_US", "America/Havana");
    EXPECT_EQ(havana.interval(Component::day, utc("2022-11-06 05:30:00")),
        between("2022-11-06 04:00:00", "2022-11-07 05:00:00"));
    // A day was left out.
    const Calendar apia("en_US", "Pacific/Apia");
    const auto eve = apia.interval(Component::day, utc("2011-12-30 09:00:00")).value();
    EXPECT_EQ(eve, between("2011-12-29 10:00:00", "2011-12-30 10:00:00"));
    EXPECT_EQ(apia.interval(Component::day, eve.end)->start, eve.end);
}

TEST(Calendar, EndsAnHourWhereHalfAnHourIsSkippedOrRepeated)
{
    const Calendar calendar("en_AU", "Australia/Lord_Howe");
    for (const char* noon : { "2026-04-05 01:30:00", "2026-10-04 01:30:00" }) {
        const auto day = calendar.interval(Component::day, utc(noon)).value();
        auto cursor = day.start;
        while (cursor < day.end) {
            const auto hour = calendar.interval(Component::hour, cursor).value();
            EXPECT_EQ(hour.start, cursor);
            ASSERT_GT(hour.end, cursor);
            cursor = hour.end;
        }
        EXPECT_EQ(cursor, day.end);
    }
}

TEST(Calendar, CanBeAnotherThanTheGregorian)
{
    const Calendar hebrew("en_US@calendar=hebrew", "UTC");
    EXPECT_EQ(hebrew.monthAndYear(utc("2026-01-10 00:00:00")), "Tevet 5786");
    EXPECT_EQ(hebrew.interval(Component::month, utc("2026-01-10 00:00:00")),
        between("2025-12-21 00:00:00", "2026-01-19 00:00:00"));
    EXPECT_TRUE(hebrew.isSameYear(utc("2025-12-31 12:00:00"), utc("2026-01-01 12:00:00")));
    EXPECT_FALSE(hebrew.isSameYear(utc("2025-09-01 12:00:00"), utc("2025-12-01 12:00:00")));
}

TEST(Calendar, NamesMonthsInItsLanguageAndZone)
{
    const auto newYear = utc("2025-12-31 23:30:00");
    EXPECT_EQ(Calendar("en_US", "UTC").monthName(newYear), "December");
    EXPECT_EQ(Calendar("en_US", "UTC").monthAndYear(newYear), "December 2025");
    EXPECT_EQ(Calendar("de_DE", "Europe/Berlin").monthName(newYear), "Januar");
    EXPECT_EQ(Calendar("de_DE", "Europe/Berlin").monthAndYear(newYear), "Januar 2026");
    EXPECT_EQ(Calendar("ja_JP", "UTC").monthAndYear(newYear), "2025年12月");
    // By itself a month stands in the nominative.
    EXPECT_EQ(Calendar("ru_RU", "UTC").monthName(newYear), "декабрь");
}

TEST(Calendar, HasYearsOfItsZone)
{
    EXPECT_FALSE(Calendar("en", "UTC").isSameYear(utc("2025-12-31 23:30:00"), utc("2026-01-01 12:00:00")));
    EXPECT_TRUE(Calendar("en", "Europe/Berlin").isSameYear(utc("2025-12-31 23:30:00"), utc("2026-01-01 12:00:00")));
}

TEST(Calendar, TakesAnUnknownZoneForUTC)
{
    EXPECT_EQ(Calendar("en", "Nowhere/None").startOfDay(utc("2026-01-01 12:00:00")), utc("2026-01-01 00:00:00"));
}

TEST(Calendar, IsAbsentWhereDatesEnd)
{
    const Calendar calendar("en", "UTC");
    EXPECT_EQ(calendar.interval(Component::month, Calendar::Date::min()), std::nullopt);
    EXPECT_EQ(calendar.interval(Component::month, Calendar::Date::max()), std::nullopt);
    EXPECT_EQ(calendar.movedByDays(Calendar::Date::max(), 1), std::nullopt);
}

TEST(Calendar, CanBeTheSystems)
{
    const auto now = utc("2026-01-01 12:00:00");
    const auto today = Calendar::current().interval(Component::day, now);
    ASSERT_TRUE(today);
    EXPECT_TRUE(today->contains(now));
}
