// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HistoryTesting.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

using namespace Sorvane;
using testing::ElementsAre;
using testing::IsEmpty;
using TranscriptStatistics::Activity;
using TranscriptStatistics::Summary;

namespace {

constexpr const char* countersFile = ".lifetime-statistics.json";

TranscriptEntry entry(uint32_t id, const std::string& text, const char* date, double duration)
{
    return { numberedUUID(id), text, "Editor", std::nullopt, utc(date), duration, std::nullopt, std::nullopt };
}

} // namespace

TEST(LifetimeStatistics, CountEachTranscriptOnce)
{
    LifetimeStatistics statistics;
    statistics.include({ entry(1, "one two", "2026-01-02 00:00:00", 2), entry(2, "three", "2026-01-01 00:00:00", 3) });
    statistics.include({ entry(1, "one", "2026-01-02 00:00:00", 2) });
    EXPECT_EQ(statistics.summary(), (Summary { 2, 2, 5 }));
    EXPECT_THAT(statistics.activity(),
        ElementsAre(Activity { utc("2026-01-01 00:00:00"), 1 }, Activity { utc("2026-01-02 00:00:00"), 1 }));
    EXPECT_EQ(statistics.find(numberedUUID(1))->words, 1);
    EXPECT_EQ(statistics.find(numberedUUID(3)), nullptr);
}

TEST(LifetimeStatistics, AreAsBeforeOnceAllIsTakenBack)
{
    LifetimeStatistics statistics;
    statistics.include({ numberedUUID(1), { 1, 1, std::nullopt } });
    const LifetimeStatistics before = statistics;
    statistics.include({ numberedUUID(1), { 2, 2, std::nullopt } });
    statistics.include({ numberedUUID(2), { 3, 3, std::nullopt } });
    statistics.include({ numberedUUID(2), { 4, 4, std::nullopt } });
    statistics.takeBack(numberedUUID(2), LifetimeStatistics::Contribution { 3, 3, std::nullopt });
    EXPECT_EQ(statistics.summary(), (Summary { 5, 2, 5 }));
    statistics.takeBack(numberedUUID(2), std::nullopt);
    statistics.takeBack(numberedUUID(1), before.items()[0].contribution);
    EXPECT_EQ(statistics.items(), before.items());
    EXPECT_EQ(statistics.find(numberedUUID(2)), nullptr);
    EXPECT_EQ(statistics.include({ numberedUUID(3), {} }), 1U);
}

TEST(LifetimeStatistics, CountNoSecondsOfADurationThatIsNone)
{
    LifetimeStatistics statistics;
    statistics.include({ entry(1, "a", "2026-01-01 00:00:00", -1), entry(2, "b", "2026-01-01 00:00:00", NAN),
        entry(3, "c", "2026-01-01 00:00:00", HUGE_VAL) });
    EXPECT_EQ(statistics.summary(), (Summary { 3, 3, 0 }));
}

TEST(LifetimeStatistics, CountWithoutADateButShowNoActivity)
{
    LifetimeStatistics statistics;
    statistics.include({ numberedUUID(1), { 5, 1, std::nullopt } });
    EXPECT_EQ(statistics.summary(), (Summary { 5, 1, 1 }));
    EXPECT_THAT(statistics.activity(), IsEmpty());
}

TEST(LifetimeStatistics, StayAtTheEndsOfWhatANumberHolds)
{
    constexpr int64_t most = std::numeric_limits<int64_t>::max();
    LifetimeStatistics statistics;
    statistics.include({ numberedUUID(1), { most, 0, std::nullopt } });
    statistics.include({ numberedUUID(2), { most, 0, std::nullopt } });
    EXPECT_EQ(statistics.summary().words, most);
}

TEST(LifetimeStatistics, FollowEveryOperationOfTheHistory)
{
    const TemporaryFolder folder;
    NumberedUUIDs uuids;
    TranscriptHistory history(folder.path(), uuids);
    const TranscriptEntry entry = history.save(transcript("one two three"));
    EXPECT_EQ(history.lifetimeSummary(), (Summary { 3, 1, 2.5 }));
    EXPECT_THAT(history.lifetimeActivity(), ElementsAre(Activity { entry.createdAt, 3 }));
    history.applyCleanup("one two", entry.id);
    EXPECT_EQ(history.lifetimeSummary(), (Summary { 2, 1, 2.5 }));
    history.deleteEntries({ entry });
    EXPECT_EQ(history.lifetimeSummary(), (Summary { 2, 1, 2.5 }));
    EXPECT_THAT(history.lifetimeActivity(), ElementsAre(Activity { entry.createdAt, 2 }));
    EXPECT_EQ(folder.contents(countersFile),
        R"({"contributions":["00000000-0000-0000-0000-000000000001",)"
        R"({"words":2,"recordingTime":2.5,"createdAt":788918400}]})");
}

TEST(LifetimeStatistics, TakeInTranscriptsThatAreOlderThanTheirFile)
{
    const TemporaryFolder folder;
    NumberedUUIDs uuids;
    {
        TranscriptHistory history(folder.path(), uuids);
        history.save(transcript("one two"));
        history.save(transcript("three"));
    }
    std::filesystem::remove(folder.path() / countersFile);
    EXPECT_EQ(TranscriptHistory(folder.path(), uuids).lifetimeSummary(), (Summary { 3, 2, 5 }));

    // A file that fell behind is brought up, and what only it knows stays.
    folder.write(countersFile,
        R"({"contributions":["00000000-0000-0000-0000-000000000001",{"words":100,"recordingTime":1},)"
        R"("00000000-0000-0000-0000-0000000000FF",{"words":10,"recordingTime":1}]})");
    EXPECT_EQ(TranscriptHistory(folder.path(), uuids).lifetimeSummary(), (Summary { 13, 3, 6 }));
}
