// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HistoryTesting.h"

#include <Sorvane/HistoryDeletionError.h>

#include <FileSizeLimit.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace Sorvane;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

namespace {

constexpr const char* firstFile = "00000000-0000-0000-0000-000000000001.json";
constexpr const char* countersFile = ".lifetime-statistics.json";
constexpr const char* countersMessage
    = "Lifetime statistics could not be updated. Existing totals and saved transcripts have been kept.";
constexpr const char* unreadableMessage = "Some saved transcripts could not be read. Their files have been kept.";

class StorageTrouble : public testing::Test {
protected:
    TemporaryFolder folder_;
    NumberedUUIDs uuids_;

    // A transcript's file as another program may write it.
    void writeTranscript(const std::string& name, const std::string& text) const
    {
        folder_.write(name,
            R"({"id":"00000000-0000-0000-0000-0000000000AA","text":")" + text
                + R"(","appName":"a","createdAt":1,"duration":2})");
    }
};

} // namespace

TEST_F(StorageTrouble, OnAFullDiskNothingIsSavedAndNothingLost)
{
    TranscriptHistory history(folder_.path(), uuids_);
    history.save(transcript("here"));
    const auto names = folder_.names();
    {
        const TestSupport::FileSizeLimit limit(1000);
        EXPECT_THROW(history.save(transcript(std::string(1000, 'x'))), fs::filesystem_error);
        EXPECT_THROW(history.applyCleanup(std::string(1000, 'x'), numberedUUID(1)), fs::filesystem_error);
    }
    EXPECT_EQ(texts(history.entries()), "here\n");
    EXPECT_EQ(history.lifetimeSummary()->words, 1);
    EXPECT_EQ(folder_.names(), names);
    EXPECT_EQ(TranscriptHistory(folder_.path(), uuids_).entries(), history.entries());
}

TEST_F(StorageTrouble, ATranscriptStandsWhereTheCountersFindNoRoom)
{
    TranscriptHistory history(folder_.path(), uuids_);
    for (int i = 0; i < 10; ++i)
        history.save(transcript("word", i));
    const auto counters = history.lifetimeStatistics().items();
    const std::string stored = folder_.contents(countersFile);
    {
        const TestSupport::FileSizeLimit limit(500);
        history.save(transcript("two words", 11));
        EXPECT_EQ(history.errorMessage(), countersMessage);
        EXPECT_EQ(history.lifetimeSummary(), std::nullopt);
        EXPECT_EQ(history.entries().size(), 11U);
        EXPECT_EQ(history.lifetimeStatistics().items(), counters);
        EXPECT_EQ(folder_.contents(countersFile), stored);

        history.applyCleanup("three words now", history.entries()[0].id);
        EXPECT_EQ(history.lifetimeSummary(), std::nullopt);
        EXPECT_EQ(history.entries()[0].text, "three words now");

        EXPECT_THROW(history.deleteEntries({ history.entries()[0] }), fs::filesystem_error);
        EXPECT_EQ(history.entries().size(), 11U);
    }
    // What was not counted then is counted now.
    history.save(transcript("last", 12));
    EXPECT_EQ(history.lifetimeSummary()->words, 14);
    EXPECT_EQ(history.lifetimeSummary()->transcripts, 12);
}

TEST_F(StorageTrouble, AFolderRemovedMeanwhileTakesNothing)
{
    TranscriptHistory history(folder_.path(), uuids_);
    const TranscriptEntry entry = history.save(transcript("here"));
    fs::remove_all(folder_.path());
    EXPECT_THROW(history.save(transcript("more")), fs::filesystem_error);
    EXPECT_THROW(history.applyCleanup("Here.", entry.id), fs::filesystem_error);
    EXPECT_THROW(history.deleteEntries({ entry }), fs::filesystem_error);
    EXPECT_EQ(texts(history.entries()), "here\n");
    EXPECT_EQ(history.entries()[0].rawText, std::nullopt);
}

TEST_F(StorageTrouble, DotFilesAndOtherNamesAreNoTranscripts)
{
    writeTranscript(".hidden.json", "hidden");
    writeTranscript("notes.JSON", "capitals");
    writeTranscript("notes.json.bak", "backup");
    writeTranscript("json", "bare");
    const TranscriptHistory history(folder_.path(), uuids_);
    EXPECT_TRUE(history.entries().empty());
    EXPECT_EQ(history.errorMessage(), std::nullopt);
    EXPECT_EQ(history.lifetimeSummary()->transcripts, 0);
}

TEST_F(StorageTrouble, WhatAnEndedProcessLeftIsNoTranscriptAndGoes)
{
    writeTranscript(".00000000-0000-0000-0000-0000000000AA.json.a1B2c3.unfinished", "half");
    const TranscriptHistory history(folder_.path(), uuids_);
    EXPECT_TRUE(history.entries().empty());
    EXPECT_THAT(folder_.names(), UnorderedElementsAre(countersFile));
}

TEST_F(StorageTrouble, WhatCannotBeReadIsKeptAndTheRestLoads)
{
    writeTranscript("good.json", "good");
    folder_.write("empty.json", "");
    folder_.write("half.json", R"({"id":"00000000-0000-0000-0000-0000000000AB","te)");
    writeTranscript("bytes.json", "caf\xE9");
    fs::create_directory(folder_.path() / "folder.json");
    ASSERT_EQ(::mkfifo((folder_.path() / "pipe.json").c_str(), 0600), 0);
    fs::create_symlink("nowhere", folder_.path() / "dangling.json");
    fs::create_symlink("loop.json", folder_.path() / "loop.json");
    folder_.write("huge.json", "");
    fs::resize_file(folder_.path() / "huge.json", uintmax_t { 1 } << 40);
    writeTranscript("surrogate.json", "\\ud800");
    folder_.write("deep.json", std::string(1'000'000, '['));
    const auto names = folder_.names();

    const TranscriptHistory history(folder_.path(), uuids_);
    EXPECT_EQ(texts(history.entries()), "good\n");
    EXPECT_EQ(history.errorMessage(), unreadableMessage);
    for (const auto& name : names)
        EXPECT_TRUE(folder_.names().contains(name)) << name;
    EXPECT_EQ(folder_.contents("half.json"), R"({"id":"00000000-0000-0000-0000-0000000000AB","te)");
}

TEST_F(StorageTrouble, ATranscriptHidesNothingThatWouldNotEnd)
{
    folder_.write("deep.json",
        R"({"id":"00000000-0000-0000-0000-0000000000AA","text":"deep","appName":"a","createdAt":1e300,"duration":-1,"x":)"
            + std::string(1'000'000, '[') + std::string(1'000'000, ']') + "}");
    const TranscriptHistory history(folder_.path(), uuids_);
    EXPECT_EQ(texts(history.entries()), "deep\n");
    EXPECT_EQ(history.lifetimeSummary()->recordingTime, 0);
    EXPECT_EQ(history.errorMessage(), std::nullopt);
}

TEST_F(StorageTrouble, TwoFilesOfOneTranscriptAreDeletedTogether)
{
    writeTranscript("00000000-0000-0000-0000-0000000000AA.json", "one");
    writeTranscript("copy.json", "the other");
    TranscriptHistory history(folder_.path(), uuids_);
    EXPECT_EQ(history.entries().size(), 2U);
    EXPECT_EQ(history.lifetimeSummary()->transcripts, 1);
    try {
        history.deleteEntries({ history.entries()[0] });
        FAIL() << "no error";
    } catch (const HistoryDeletionError& error) {
        EXPECT_EQ(error.removed(), 1);
        EXPECT_EQ(error.failed(), 1);
    }
    EXPECT_TRUE(history.entries().empty());
    EXPECT_TRUE(folder_.names().contains("copy.json"));
}

TEST_F(StorageTrouble, ATranscriptIsReadThroughALink)
{
    writeTranscript("elsewhere", "linked");
    fs::create_symlink("elsewhere", folder_.path() / "link.json");
    EXPECT_EQ(texts(TranscriptHistory(folder_.path(), uuids_).entries()), "linked\n");
}

TEST_F(StorageTrouble, ATranscriptUnderAnotherNameLoadsAndCannotBeDeleted)
{
    writeTranscript("copy.json", "odd name");
    TranscriptHistory history(folder_.path(), uuids_);
    ASSERT_EQ(texts(history.entries()), "odd name\n");
    EXPECT_THROW(history.deleteEntries({ history.entries()[0] }), HistoryDeletionError);
    EXPECT_EQ(texts(history.entries()), "odd name\n");
    EXPECT_TRUE(folder_.names().contains("copy.json"));
}

TEST_F(StorageTrouble, AnEmptyFolderInAFilesPlaceIsNotDeleted)
{
    TranscriptHistory history(folder_.path(), uuids_);
    const TranscriptEntry entry = history.save(transcript("here"));
    fs::remove(folder_.path() / firstFile);
    fs::create_directory(folder_.path() / firstFile);
    EXPECT_THROW(history.deleteEntries({ entry }), HistoryDeletionError);
    EXPECT_TRUE(fs::is_directory(folder_.path() / firstFile));
}

TEST_F(StorageTrouble, CountersThatCannotBeReadAreNeverWrittenAndKeepEverything)
{
    for (const std::string damaged : { R"({"contributions":["00000000-0000-0000-0000-000000000001",{"words":1}]})", "",
             "{}", R"({"contributions":[1]})" }) {
        const TemporaryFolder folder;
        folder.write(countersFile, damaged);
        TranscriptHistory history(folder.path(), uuids_);
        EXPECT_EQ(history.errorMessage(), countersMessage);
        EXPECT_NE(history.lifetimeReadError(), nullptr);
        EXPECT_EQ(history.lifetimeSummary(), std::nullopt);
        history.setErrorMessage(std::nullopt);

        const TranscriptEntry entry = history.save(transcript("saved all the same"));
        EXPECT_EQ(history.errorMessage(), countersMessage);
        EXPECT_EQ(history.lifetimeSummary(), std::nullopt);
        EXPECT_ANY_THROW(history.deleteEntries({ entry }));
        EXPECT_EQ(texts(history.entries()), "saved all the same\n");
        EXPECT_EQ(folder.names().size(), 2U);
        EXPECT_EQ(folder.contents(countersFile), damaged);
    }
}

TEST_F(StorageTrouble, CountersBehindADanglingLinkAreNotTakenForNone)
{
    fs::create_symlink("nowhere", folder_.path() / countersFile);
    const TranscriptHistory history(folder_.path(), uuids_);
    EXPECT_NE(history.lifetimeReadError(), nullptr);
    EXPECT_TRUE(fs::is_symlink(folder_.path() / countersFile));
}

TEST_F(StorageTrouble, CountersThatAreNoFileAreLeftInPeace)
{
    const auto expectUnreadable = [&] {
        TranscriptHistory history(folder_.path(), uuids_);
        EXPECT_NE(history.lifetimeReadError(), nullptr);
        EXPECT_EQ(history.errorMessage(), countersMessage);
        EXPECT_ANY_THROW(history.deleteEntries({}));
    };
    const auto counters = folder_.path() / countersFile;
    ASSERT_EQ(::mkfifo(counters.c_str(), 0600), 0);
    expectUnreadable();
    EXPECT_TRUE(fs::is_fifo(counters));
    fs::remove(counters);
    fs::create_directory(counters);
    expectUnreadable();
    EXPECT_TRUE(fs::is_directory(counters));
    fs::remove(counters);
    folder_.write(countersFile, "");
    fs::resize_file(counters, uintmax_t { 1 } << 40);
    expectUnreadable();
    EXPECT_EQ(fs::file_size(counters), uintmax_t { 1 } << 40);
}

TEST_F(StorageTrouble, TheCauseIsToldThatTheUserCanMend)
{
    folder_.write(".app-order.plist", "no property list");
    folder_.write(countersFile, "no counters");
    EXPECT_EQ(TranscriptHistory(folder_.path(), uuids_).errorMessage(),
        "History could not be opened: not a property list of texts");
    fs::remove(folder_.path() / ".app-order.plist");
    folder_.write("bad.json", "");
    EXPECT_EQ(TranscriptHistory(folder_.path(), uuids_).errorMessage(), countersMessage);
    fs::remove(folder_.path() / countersFile);
    EXPECT_EQ(TranscriptHistory(folder_.path(), uuids_).errorMessage(), unreadableMessage);
}

TEST_F(StorageTrouble, AnAppOrderThatIsNoFileIsNotWaitedFor)
{
    const auto order = folder_.path() / ".app-order.plist";
    fs::create_directory(order);
    EXPECT_EQ(TranscriptHistory(folder_.path(), uuids_).errorMessage(), "History could not be opened: Is a directory");
    fs::remove(order);
    ASSERT_EQ(::mkfifo(order.c_str(), 0600), 0);
    EXPECT_EQ(
        TranscriptHistory(folder_.path(), uuids_).errorMessage(), "History could not be opened: Invalid argument");
}

TEST_F(StorageTrouble, AnAppOrderThatIsNoneIsToldAndTheTranscriptsStay)
{
    writeTranscript("good.json", "good");
    folder_.write(".app-order.plist", "no property list");
    const TranscriptHistory history(folder_.path(), uuids_);
    EXPECT_EQ(history.errorMessage(), "History could not be opened: not a property list of texts");
    EXPECT_EQ(texts(history.entries()), "good\n");
    EXPECT_EQ(history.lifetimeSummary()->transcripts, 1);
    EXPECT_TRUE(history.appOrder().empty());
}

TEST_F(StorageTrouble, ManyFilesAreReadAsOneIs)
{
    for (int i = 0; i < 1'200; ++i)
        writeTranscript(std::to_string(i) + ".json", std::to_string(i));
    folder_.write("bad.json", "");
    const TranscriptHistory history(folder_.path(), uuids_);
    ASSERT_EQ(history.entries().size(), 1'200U);
    // All of the same moment: in the order of the files' names.
    EXPECT_EQ(history.entries()[0].text, "0");
    EXPECT_EQ(history.entries()[2].text, "10");
    EXPECT_EQ(history.entries()[1'199].text, "999");
    EXPECT_EQ(history.errorMessage(), unreadableMessage);
}
