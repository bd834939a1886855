// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HistoryTesting.h"

#include <Sorvane/HistorySection.h>

#include <gmock/gmock.h>

#include <array>

using namespace Sorvane;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Kind = HistorySection::Kind;

uint32_t nextID = 1;

TranscriptEntry at(const char* date, uint32_t id = 0)
{
    return { numberedUUID(id ? id : nextID++), date, "Editor", std::nullopt, utc(date), 1, std::nullopt, std::nullopt };
}

// "Today: text, text"
std::vector<std::string> described(const std::vector<HistorySection>& sections)
{
    std::vector<std::string> lines;
    for (const auto& section : sections) {
        std::string line = section.title + ":";
        for (const auto& entry : section.entries)
            line += " " + entry.text.substr(5, 8);
        lines.push_back(line);
    }
    return lines;
}

const Calendar utcCalendar("en_US", "UTC");
const auto now = utc("2026-03-15 12:00:00");

const TranscriptList spread { at("2026-03-16 00:00:00"), at("2026-03-15 23:59:59"), at("2026-03-15 00:00:00"),
    at("2026-03-14 23:59:59"), at("2026-03-14 00:00:00"), at("2026-03-13 12:00:00"), at("2026-03-08 00:00:00"),
    at("2026-03-07 23:59:59"), at("2026-02-13 00:00:00"), at("2026-02-12 23:59:59"), at("2026-01-02 12:00:00"),
    at("2025-12-31 12:00:00"), at("2025-12-01 12:00:00") };

} // namespace

TEST(HistorySection, GroupsByDayAndThenByMonth)
{
    EXPECT_THAT(described(HistorySection::grouped(spread, HistoryOrder::newestFirst, now, utcCalendar)),
        ElementsAre("Upcoming: 03-16 00", "Today: 03-15 23 03-15 00", "Yesterday: 03-14 23 03-14 00",
            "Previous 7 Days: 03-13 12 03-08 00", "Previous 30 Days: 03-07 23 02-13 00", "February: 02-12 23",
            "January: 01-02 12", "December 2025: 12-31 12 12-01 12"));
}

TEST(HistorySection, TurnsAroundAsAWhole)
{
    EXPECT_THAT(described(HistorySection::grouped(spread, HistoryOrder::oldestFirst, now, utcCalendar)),
        ElementsAre("December 2025: 12-01 12 12-31 12", "January: 01-02 12", "February: 02-12 23",
            "Previous 30 Days: 02-13 00 03-07 23", "Previous 7 Days: 03-08 00 03-13 12", "Yesterday: 03-14 00 03-14 23",
            "Today: 03-15 00 03-15 23", "Upcoming: 03-16 00"));
}

TEST(HistorySection, IsIdentifiedByItsKindAndMonth)
{
    const auto sections = HistorySection::grouped(spread, HistoryOrder::newestFirst, now, utcCalendar);
    EXPECT_EQ(sections[1].id, HistorySection::ID { Kind::today });
    EXPECT_EQ(sections[5].id, (HistorySection::ID { Kind::month, utc("2026-02-01 00:00:00") }));
    EXPECT_NE(sections[5].id, sections[6].id);
}

TEST(HistorySection, OrdersTheSameMomentByIdInEitherDirection)
{
    const TranscriptList entries { at("2026-03-15 12:00:00", 2), at("2026-03-15 12:00:00", 3),
        at("2026-03-15 12:00:00", 1) };
    for (const auto order : { HistoryOrder::newestFirst, HistoryOrder::oldestFirst }) {
        const auto sections = HistorySection::grouped(entries, order, now, utcCalendar);
        ASSERT_EQ(sections.size(), 1U);
        for (uint32_t i = 0; i < 3; ++i)
            EXPECT_EQ(sections[0].entries[i].id, numberedUUID(i + 1));
    }
}

TEST(HistorySection, IsNoneWithoutEntries)
{
    EXPECT_THAT(HistorySection::grouped({}, HistoryOrder::newestFirst, now, utcCalendar), IsEmpty());
}

TEST(HistorySection, IsNoneWhereTheCalendarHasNoDay)
{
    EXPECT_THAT(
        HistorySection::grouped(spread, HistoryOrder::newestFirst, Calendar::Date::max(), utcCalendar), IsEmpty());
    TranscriptEntry beyond = at("2026-03-15 12:00:00");
    beyond.createdAt = Calendar::Date::max();
    EXPECT_THAT(HistorySection::grouped({ beyond }, HistoryOrder::newestFirst, now, utcCalendar), IsEmpty());
}

TEST(HistorySection, DependsOnTheTimeZone)
{
    const TranscriptList entries { at("2026-03-15 02:00:00") };
    const auto title = [&](const char* zone) {
        return HistorySection::grouped(entries, HistoryOrder::newestFirst, now, Calendar("en_US", zone))[0].title;
    };
    EXPECT_EQ(title("UTC"), "Today");
    EXPECT_EQ(title("America/Los_Angeles"), "Yesterday");
}

TEST(HistorySection, CountsDaysAndNotHoursWhereTheClocksAreChanged)
{
    const Calendar berlin("en_GB", "Europe/Berlin");
    const auto titleOf = [&](const char* date, const char* seenFrom) {
        return HistorySection::grouped({ at(date) }, HistoryOrder::newestFirst, utc(seenFrom), berlin)[0].title;
    };
    // Half past midnight on the Monday after: Sunday had 23 hours in March, and 25 in October.
    for (const auto& [monday, firstOfSunday, lastOfSunday] : std::vector<std::array<const char*, 3>> {
             { "2026-03-29 22:30:00", "2026-03-28 23:00:00", "2026-03-29 21:59:59" },
             { "2026-10-25 23:30:00", "2026-10-24 22:00:00", "2026-10-25 22:59:59" } }) {
        EXPECT_EQ(titleOf(monday, monday), "Today");
        EXPECT_EQ(titleOf(firstOfSunday, monday), "Yesterday");
        EXPECT_EQ(titleOf(lastOfSunday, monday), "Yesterday");
    }
    EXPECT_EQ(titleOf("2026-03-28 22:59:59", "2026-03-29 22:30:00"), "Previous 7 Days");
    EXPECT_EQ(titleOf("2026-03-23 00:00:00", "2026-03-29 22:30:00"), "Previous 7 Days"); // Monday a week ago, 1:00
    EXPECT_EQ(titleOf("2026-03-22 22:59:59", "2026-03-29 22:30:00"), "Previous 30 Days");
}

TEST(HistorySection, NamesMonthsInTheUsersLanguage)
{
    const TranscriptList entries { at("2026-01-01 12:00:00"), at("2025-05-01 12:00:00") };
    EXPECT_THAT(
        described(HistorySection::grouped(entries, HistoryOrder::newestFirst, now, Calendar("fr_FR", "Europe/Paris"))),
        ElementsAre("janvier: 01-01 12", "mai 2025: 05-01 12"));
}

TEST(HistorySection, KnowsYesterdayWhereTodayHasNoMidnight)
{
    // On 27 March 2022 the day began at one o'clock.
    const TranscriptList entries { at("2022-03-26 12:00:00") };
    const auto sections = HistorySection::grouped(
        entries, HistoryOrder::newestFirst, utc("2022-03-27 12:00:00"), Calendar("en_US", "Asia/Beirut"));
    EXPECT_EQ(sections[0].title, "Yesterday");
}
