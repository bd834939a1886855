// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HistoryTesting.h"

#include <Sorvane/HistoryDeletionError.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>

using namespace Sorvane;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Optional;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

namespace {

constexpr const char* emptyCounters = R"({"contributions":[]})";
constexpr const char* firstFile = "00000000-0000-0000-0000-000000000001.json";

class TranscriptHistoryTest : public testing::Test {
protected:
    TemporaryFolder folder_;
    NumberedUUIDs uuids_;
    TranscriptHistory history_ { folder_.path(), uuids_ };

    TranscriptHistory reopened() { return TranscriptHistory(folder_.path(), uuids_); }
};

} // namespace

TEST_F(TranscriptHistoryTest, BeginsEmptyWithCountersOfZero)
{
    EXPECT_TRUE(history_.entries().empty());
    EXPECT_EQ(history_.errorMessage(), std::nullopt);
    EXPECT_TRUE(history_.appOrder().empty());
    EXPECT_THAT(history_.lifetimeSummary(), Optional(TranscriptStatistics::Summary {}));
    EXPECT_EQ(history_.directory(), folder_.path());
    EXPECT_EQ(folder_.contents(".lifetime-statistics.json"), emptyCounters);
}

TEST_F(TranscriptHistoryTest, StoresATranscriptInAFileOfItsOwn)
{
    NewTranscript all = transcript("Fix the \"bug\".\n", 1);
    all.bundleIdentifier = "org.example.Editor";
    all.harness = CodingHarness::claudeCode;
    const TranscriptEntry entry = history_.save(all);

    EXPECT_THAT(history_.entries(), ElementsAre(entry));
    EXPECT_EQ(entry.id, numberedUUID(1));
    EXPECT_EQ(entry.text, all.text);
    EXPECT_EQ(entry.appName, all.appName);
    EXPECT_EQ(entry.bundleIdentifier, all.bundleIdentifier);
    EXPECT_EQ(entry.createdAt, all.createdAt);
    EXPECT_EQ(entry.duration, all.duration);
    EXPECT_EQ(entry.harness, all.harness);
    EXPECT_EQ(entry.rawText, std::nullopt);
    EXPECT_EQ(folder_.contents(firstFile),
        R"({"id":"00000000-0000-0000-0000-000000000001","text":"Fix the \"bug\".\n","appName":"Editor",)"
        R"("bundleIdentifier":"org.example.Editor","createdAt":788918401.0,"duration":2.5,"harness":"Claude Code"})");
    EXPECT_THAT(folder_.names(), UnorderedElementsAre(firstFile, ".lifetime-statistics.json"));
}

TEST_F(TranscriptHistoryTest, LeavesOutWhatIsAbsent)
{
    history_.save(transcript("Hello."));
    EXPECT_EQ(folder_.contents(firstFile),
        R"({"id":"00000000-0000-0000-0000-000000000001","text":"Hello.","appName":"Editor",)"
        R"("createdAt":788918400.0,"duration":2.5})");
}

TEST_F(TranscriptHistoryTest, HoldsTheNewestFirstAndTheEarlierSavedFirstOfTheSameMoment)
{
    history_.save(transcript("second", 2));
    history_.save(transcript("first", 1));
    history_.save(transcript("third", 3));
    history_.save(transcript("also second", 2));
    EXPECT_EQ(texts(history_.entries()), "third\nsecond\nalso second\nfirst\n");
}

TEST_F(TranscriptHistoryTest, TakesAClockThatGoesBackwards)
{
    for (const char* date :
        { "2026-01-01 00:00:00", "1970-01-01 00:00:00", "2200-12-31 23:59:59", "2025-12-31 00:00:00" }) {
        NewTranscript one = transcript(date);
        one.createdAt = utc(date);
        history_.save(one);
    }
    EXPECT_EQ(texts(history_.entries()),
        "2200-12-31 23:59:59\n2026-01-01 00:00:00\n2025-12-31 00:00:00\n1970-01-01 00:00:00\n");
    EXPECT_EQ(reopened().entries(), history_.entries());
    const auto& activity = history_.lifetimeActivity();
    EXPECT_TRUE(std::ranges::is_sorted(activity, {}, &TranscriptStatistics::Activity::date));
    EXPECT_EQ(activity.size(), 4U);
}

TEST_F(TranscriptHistoryTest, ReadsTheAppOrderAndNeverWritesIt)
{
    const std::string order
        = "<plist version=\"1.0\"><array><string>Mail</string><string>Editor</string></array></plist>";
    folder_.write(".app-order.plist", order);
    TranscriptHistory again(folder_.path(), uuids_);
    EXPECT_THAT(again.appOrder(), ElementsAre("Mail", "Editor"));
    again.save(transcript("Hello."));
    EXPECT_EQ(folder_.contents(".app-order.plist"), order);
}

TEST_F(TranscriptHistoryTest, HasItAllAgainWhenOpenedAnew)
{
    history_.save(transcript("one", 1));
    NewTranscript precise = transcript("two", 2);
    precise.createdAt += 123'456'789ns;
    precise.duration = 0.1;
    history_.save(precise);
    history_.applyCleanup("One.", numberedUUID(1));

    const TranscriptHistory again = reopened();
    ASSERT_EQ(again.entries().size(), 2U);
    EXPECT_EQ(again.entries()[1], history_.entries()[1]);
    EXPECT_EQ(again.entries()[0].duration, 0.1);
    // A date is stored as a number of seconds, some tenths of a microsecond fine.
    EXPECT_LT(std::chrono::abs(again.entries()[0].createdAt - precise.createdAt), 1us);
    EXPECT_EQ(again.errorMessage(), std::nullopt);
    EXPECT_EQ(again.lifetimeSummary(), history_.lifetimeSummary());
}

TEST_F(TranscriptHistoryTest, KeepsTheVeryFirstTextThroughCleanups)
{
    const auto id = history_.save(transcript("um hello")).id;
    history_.applyCleanup("Hello", id);
    history_.applyCleanup("Hello.", id);
    EXPECT_EQ(history_.entries()[0].text, "Hello.");
    EXPECT_EQ(history_.entries()[0].rawText, "um hello");
    EXPECT_EQ(reopened().entries()[0], history_.entries()[0]);
}

TEST_F(TranscriptHistoryTest, CleansATranscriptWhereItStands)
{
    history_.save(transcript("old", 1));
    history_.save(transcript("middle", 2));
    history_.save(transcript("new", 3));
    history_.applyCleanup("Middle.", numberedUUID(2));
    EXPECT_EQ(texts(history_.entries()), "new\nMiddle.\nold\n");
}

TEST_F(TranscriptHistoryTest, CannotCleanWhatIsNotThere)
{
    try {
        history_.applyCleanup("Hello.", numberedUUID(9));
        FAIL() << "no error";
    } catch (const fs::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    }
}

TEST_F(TranscriptHistoryTest, DeletesFilesAndKeepsTheCounters)
{
    history_.save(transcript("one", 1));
    history_.save(transcript("two words", 2));
    history_.save(transcript("three", 3));
    const auto before = history_.lifetimeSummary();
    history_.deleteEntries({ history_.entries()[0], history_.entries()[2] });

    EXPECT_EQ(texts(history_.entries()), "two words\n");
    EXPECT_EQ(history_.lifetimeSummary(), before);
    EXPECT_THAT(folder_.names(),
        UnorderedElementsAre("00000000-0000-0000-0000-000000000002.json", ".lifetime-statistics.json"));
    EXPECT_EQ(reopened().lifetimeSummary(), before);
}

TEST_F(TranscriptHistoryTest, DeletesNothingThatItDoesNotHold)
{
    const TranscriptEntry gone = history_.save(transcript("gone"));
    history_.deleteEntries({ gone });
    history_.save(transcript("here"));
    history_.deleteEntries({ gone });
    history_.deleteEntries({});
    EXPECT_EQ(texts(history_.entries()), "here\n");
}

TEST_F(TranscriptHistoryTest, KeepsInTheListWhatCouldNotBeDeleted)
{
    history_.save(transcript("one", 1));
    history_.save(transcript("two", 2));
    history_.save(transcript("three", 3));
    fs::remove(folder_.path() / "00000000-0000-0000-0000-000000000002.json");
    const std::vector<TranscriptEntry> two { history_.entries()[0], history_.entries()[1] };
    try {
        history_.deleteEntries(two);
        FAIL() << "no error";
    } catch (const HistoryDeletionError& error) {
        EXPECT_EQ(error.failed(), 1);
        EXPECT_EQ(error.removed(), 1);
        EXPECT_EQ(error.description(), "Removed 1 transcript(s). 1 could not be deleted and remain selected.");
        EXPECT_STREQ(error.what(), "Removed 1 transcript(s). 1 could not be deleted and remain selected.");
    }
    EXPECT_EQ(texts(history_.entries()), "two\none\n");
}

TEST_F(TranscriptHistoryTest, TellsItsObserversAfterEachOperation)
{
    std::string told;
    const auto subscription = history_.subscribe(
        [&] { told += std::to_string(history_.entries().size()) + (history_.errorMessage() ? "!" : ".") + " "; });
    const TranscriptEntry entry = history_.save(transcript("one"));
    history_.applyCleanup("One.", entry.id);
    history_.setErrorMessage("Trouble.");
    history_.setErrorMessage(std::nullopt);
    history_.deleteEntries({ entry });
    EXPECT_EQ(told, "1. 1. 1! 1. 0. ");
}

TEST_F(TranscriptHistoryTest, LosesNoDictationToBytesThatAreNoText)
{
    NewTranscript broken = transcript("caf\xE9 \xF5 end");
    broken.appName = "Ed\xFFitor";
    broken.bundleIdentifier = "\x80";
    const TranscriptEntry entry = history_.save(broken);
    EXPECT_EQ(entry.text, "caf\uFFFD \uFFFD end");
    EXPECT_EQ(entry.appName, "Ed\uFFFDitor");
    EXPECT_EQ(entry.bundleIdentifier, "\uFFFD");
    EXPECT_THAT(reopened().entries(), ElementsAre(entry));

    history_.applyCleanup("Caf\xE9.", entry.id);
    EXPECT_EQ(history_.entries()[0].text, "Caf\uFFFD.");
    EXPECT_THAT(reopened().entries(), ElementsAre(history_.entries()[0]));
}

TEST_F(TranscriptHistoryTest, LosesNoDictationToADurationThatIsNoNumber)
{
    NewTranscript endless = transcript("Hello.");
    endless.duration = HUGE_VAL;
    EXPECT_EQ(history_.save(endless).duration, 0);
    endless.duration = NAN;
    EXPECT_EQ(history_.save(endless).duration, 0);
    EXPECT_EQ(reopened().entries(), history_.entries());
}

TEST_F(TranscriptHistoryTest, KeepsAnyCharacter)
{
    const std::string odd = std::string("\0\x01\x7F", 3) + "\u2028\uFFFE\U0010FFFF\\\"/\t";
    history_.save(transcript(odd));
    EXPECT_EQ(reopened().entries()[0].text, odd);
}

TEST_F(TranscriptHistoryTest, TakesATranscriptOfFiveMegabytes)
{
    std::string text;
    while (text.size() < 5'000'000)
        text += "word ";
    history_.save(transcript(text));
    EXPECT_EQ(history_.lifetimeSummary()->words, 1'000'000);
    EXPECT_EQ(reopened().entries()[0].text, text);
}

TEST(TranscriptHistory, MakesItsFolderForTheUserAlone)
{
    const TemporaryFolder outside;
    NumberedUUIDs uuids;
    const fs::path path = outside.path() / "Application Support" / "Sorvane" / "Transcripts";
    TranscriptHistory history(path / "", uuids);
    history.save(transcript("Hello."));
    EXPECT_EQ(history.errorMessage(), std::nullopt);
    EXPECT_EQ(history.directory(), path);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_all);
    for (const auto& entry : fs::directory_iterator(path))
        EXPECT_EQ(entry.status().permissions(), fs::perms::owner_read | fs::perms::owner_write) << entry.path();
}

TEST(TranscriptHistory, SaysThatItsFolderCannotBeMade)
{
    const TemporaryFolder outside;
    outside.write("file", "");
    NumberedUUIDs uuids;
    TranscriptHistory history(outside.path() / "file" / "Transcripts", uuids);
    EXPECT_EQ(history.errorMessage(), "History could not be opened: Not a directory");
    EXPECT_TRUE(history.entries().empty());
    EXPECT_EQ(history.lifetimeSummary(), std::nullopt);
    EXPECT_THROW(history.save(transcript("Hello.")), fs::filesystem_error);
    EXPECT_TRUE(history.entries().empty());
}

TEST(TranscriptEntry, ShowsItsDurationInMinutesAndSeconds)
{
    const auto label = [](double seconds) {
        TranscriptEntry entry;
        entry.duration = seconds;
        return entry.durationLabel();
    };
    EXPECT_EQ(label(75.4), "1:15");
    EXPECT_EQ(label(-3), "0:00");
    EXPECT_EQ(label(0), "0:00");
    EXPECT_EQ(label(59.6), "1:00");
    EXPECT_EQ(label(300), "5:00");
    EXPECT_EQ(label(3'600), "60:00");
    EXPECT_EQ(label(NAN), "0:00");
    EXPECT_THAT(label(HUGE_VAL), StartsWith("1666"));
}
