// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HistoryTesting.h"

#include <Sorvane/TranscriptStatistics.h>

#include <gmock/gmock.h>

#include <cmath>
#include <numeric>

using namespace Sorvane;
using namespace Sorvane::TranscriptStatistics;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TranscriptEntry entry(const std::string& text, const char* date, double duration = 1)
{
    return { numberedUUID(1), text, "Editor", std::nullopt, utc(date), duration, std::nullopt, std::nullopt };
}

std::string timeLabel(double seconds)
{
    return Summary { 0, 0, seconds }.recordingTimeLabel();
}

int64_t words(const std::vector<Bucket>& buckets)
{
    return std::accumulate(
        buckets.begin(), buckets.end(), int64_t { 0 }, [](int64_t sum, const Bucket& one) { return sum + one.words; });
}

const Calendar berlin("de_DE", "Europe/Berlin");

} // namespace

TEST(WordCount, CountsWhatHoldsALetterOrADigit)
{
    EXPECT_EQ(wordCount(""), 0);
    EXPECT_EQ(wordCount("Don't wait."), 2);
    EXPECT_EQ(wordCount("3.5"), 1);
    EXPECT_EQ(wordCount("... – ! §"), 0);
    EXPECT_EQ(wordCount("😀 👩‍💻 🇩🇪"), 0);
    EXPECT_EQ(wordCount("well 😀 done"), 2);
    EXPECT_EQ(wordCount("日本語を話す"), 3);
    EXPECT_EQ(wordCount("caf\xE9 \xFF two"), 2);
}

TEST(Summary, ShowsItsTimeInTheTwoLargestUnits)
{
    EXPECT_EQ(timeLabel(-5), "0s");
    EXPECT_EQ(timeLabel(NAN), "0s");
    EXPECT_EQ(timeLabel(41.4), "41s");
    EXPECT_EQ(timeLabel(59.6), "1m 0s");
    EXPECT_EQ(timeLabel(723), "12m 3s");
    EXPECT_EQ(timeLabel(3'599.4), "59m 59s");
    EXPECT_EQ(timeLabel(3'599.5), "1h 0m");
    EXPECT_EQ(timeLabel(7'530), "2h 5m");
}

TEST(Period, IsStoredByItsRawValue)
{
    EXPECT_THAT((std::vector { rawValue(allPeriods[0]), rawValue(allPeriods[1]), rawValue(allPeriods[2]),
                    rawValue(allPeriods[3]) }),
        ElementsAre("today", "week", "month", "lifetime"));
    for (const Period one : allPeriods)
        EXPECT_EQ(period(rawValue(one)), one);
    EXPECT_EQ(period("Today"), std::nullopt);
}

TEST(TranscriptSummary, CountsWhatLiesInThePeriod)
{
    const auto now = utc("2026-01-15 12:00:00"); // Thursday
    const TranscriptList entries { entry("tomorrow's one", "2026-01-15 23:00:00"), entry("now", "2026-01-15 12:00:00"),
        entry("first moment", "2026-01-14 23:00:00"), entry("last evening of three", "2026-01-14 22:59:59"),
        entry("a Monday", "2026-01-11 23:00:00"), entry("this month", "2025-12-31 23:00:00"),
        entry("last year", "2025-12-31 22:59:59") };
    EXPECT_EQ(summary(entries, Period::today, now, berlin), (Summary { 3, 2, 2 }));
    EXPECT_EQ(summary(entries, Period::week, now, berlin), (Summary { 11, 5, 5 }));
    EXPECT_EQ(summary(entries, Period::month, now, berlin), (Summary { 13, 6, 6 }));
    EXPECT_EQ(summary(entries, Period::lifetime, now, berlin), (Summary { 15, 7, 7 }));
}

TEST(TranscriptSummary, LeavesOutTimesThatAreNone)
{
    const TranscriptList entries { entry("a", "2026-01-15 12:00:00", -3), entry("b", "2026-01-15 12:00:00", NAN),
        entry("c", "2026-01-15 12:00:00", HUGE_VAL), entry("d", "2026-01-15 12:00:00", 2) };
    EXPECT_EQ(summary(entries, Period::lifetime, utc("2026-01-15 12:00:00"), berlin), (Summary { 4, 4, 2 }));
}

TEST(TranscriptSummary, IsZeroWithoutEntriesOrAnInterval)
{
    for (const Period period : allPeriods)
        EXPECT_EQ(summary({}, period, utc("2026-01-15 12:00:00"), berlin), Summary {});
    const TranscriptList entries { entry("a", "2026-01-15 12:00:00") };
    EXPECT_EQ(summary(entries, Period::month, Calendar::Date::max(), berlin), Summary {});
    EXPECT_EQ(summary(entries, Period::lifetime, Calendar::Date::max(), berlin).words, 1);
}

TEST(TranscriptActivity, IsOneForEachEntryInTheirOrder)
{
    EXPECT_THAT(activity({ entry("two words", "2026-01-15 12:00:00"), entry("one", "2026-01-14 12:00:00") }),
        ElementsAre(Activity { utc("2026-01-15 12:00:00"), 2 }, Activity { utc("2026-01-14 12:00:00"), 1 }));
}

TEST(ActivityBuckets, HaveTheDaysHoursWithoutAGap)
{
    for (const auto& [noon, hours] : std::vector<std::pair<const char*, size_t>> {
             { "2026-01-15 12:00:00", 24 }, { "2026-03-29 12:00:00", 23 }, { "2026-10-25 12:00:00", 25 } }) {
        const auto bars = buckets({}, Period::today, utc(noon), berlin);
        ASSERT_EQ(bars.size(), hours);
        EXPECT_EQ(words(bars), 0);
        for (size_t i = 0; i < bars.size(); ++i) {
            EXPECT_EQ(bars[i].end - bars[i].start, 1h);
            EXPECT_EQ(bars[i].start, i == 0 ? berlin.startOfDay(utc(noon)).value() : bars[i - 1].end);
        }
    }
}

TEST(ActivityBuckets, HoldTheWordsOfTheirTime)
{
    const std::vector<Activity> activity { { utc("2026-01-14 23:00:00"), 1 }, { utc("2026-01-14 23:59:59"), 2 },
        { utc("2026-01-15 00:00:00"), 4 }, { utc("2026-01-14 22:59:59"), 100 }, { utc("2026-01-15 23:00:00"), 100 } };
    const auto bars = buckets(activity, Period::today, utc("2026-01-15 12:00:00"), berlin);
    EXPECT_EQ(bars[0], (Bucket { utc("2026-01-14 23:00:00"), utc("2026-01-15 00:00:00"), 3 }));
    EXPECT_EQ(bars[1].words, 4);
    EXPECT_EQ(words(bars), 7);
}

TEST(ActivityBuckets, KeepTheHourThatComesTwiceApart)
{
    // Half past two, and an hour later half past two again.
    const auto bars = buckets({ { utc("2026-10-25 00:30:00"), 1 }, { utc("2026-10-25 01:30:00"), 2 } }, Period::today,
        utc("2026-10-25 12:00:00"), berlin);
    ASSERT_EQ(bars.size(), 25U);
    EXPECT_EQ(bars[2].words, 1);
    EXPECT_EQ(bars[3].words, 2);
    const auto spring = buckets(
        { { utc("2026-03-29 01:00:00"), 4 } }, Period::today, utc("2026-03-29 12:00:00"), berlin); // three o'clock
    EXPECT_EQ(spring[2].words, 4);
}

TEST(ActivityBuckets, AreDaysInAWeekAndAMonth)
{
    const std::vector<Activity> activity { { utc("2026-03-29 10:00:00"), 5 } };
    const auto week = buckets(activity, Period::week, utc("2026-03-29 12:00:00"), berlin);
    ASSERT_EQ(week.size(), 7U);
    EXPECT_EQ(week[6], (Bucket { utc("2026-03-28 23:00:00"), utc("2026-03-29 22:00:00"), 5 }));
    const auto month = buckets(activity, Period::month, utc("2026-03-01 12:00:00"), berlin);
    ASSERT_EQ(month.size(), 31U);
    EXPECT_EQ(month[28].words, 5);
}

TEST(ActivityBuckets, AreMonthsFromTheFirstActivityToNowOrBeyond)
{
    const auto now = utc("2026-01-15 12:00:00");
    const auto bars = buckets({ { utc("2024-01-20 12:00:00"), 3 } }, Period::lifetime, now, berlin);
    ASSERT_EQ(bars.size(), 25U);
    EXPECT_EQ(bars.front(), (Bucket { utc("2023-12-31 23:00:00"), utc("2024-01-31 23:00:00"), 3 }));
    EXPECT_EQ(bars.back(), (Bucket { utc("2025-12-31 23:00:00"), utc("2026-01-31 23:00:00"), 0 }));
    EXPECT_EQ(buckets({ { utc("2026-03-20 12:00:00"), 3 } }, Period::lifetime, now, berlin).size(), 3U);
    EXPECT_EQ(buckets({}, Period::lifetime, now, berlin).size(), 1U);
}

TEST(ActivityBuckets, CoverAsManyMonthsAsDatesCanLieApart)
{
    const auto bars = buckets({ { utc("1678-01-01 12:00:00"), 1 }, { utc("2261-12-31 12:00:00"), 2 } },
        Period::lifetime, utc("2026-01-15 12:00:00"), berlin);
    ASSERT_EQ(bars.size(), 584U * 12);
    EXPECT_EQ(words(bars), 3);
    EXPECT_EQ(bars.back().words, 2);
}

TEST(ActivityBuckets, AreNoneWhereTheCalendarHasNoInterval)
{
    for (const Period period : allPeriods)
        EXPECT_THAT(buckets({}, period, Calendar::Date::max(), berlin), IsEmpty());
}
