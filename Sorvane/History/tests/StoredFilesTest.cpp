// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AppOrder.h"
#include "HistoryTesting.h"
#include "ReferenceDate.h"
#include "StatisticsCoding.h"
#include "StoredFields.h"
#include "TranscriptCoding.h"

#include <gmock/gmock.h>

#include <cmath>

using namespace Sorvane;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string encoded(const LifetimeStatistics& statistics)
{
    std::vector<size_t> places(statistics.items().size());
    for (size_t i = 0; i < places.size(); ++i)
        places[i] = i;
    StatisticsText text;
    text.update(statistics, places);
    std::string whole;
    for (const auto piece : text.pieces())
        whole += piece;
    return whole;
}

std::string xml(const std::string& inside)
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">)"
        + inside + "</plist>";
}

// A binary property list of these objects, the first one on top. References are single bytes.
std::string binary(const std::vector<std::string>& objects)
{
    std::string list = "bplist00";
    std::string offsets;
    for (const auto& object : objects) {
        offsets += static_cast<char>(list.size() >> 8U);
        offsets += static_cast<char>(list.size());
        list += object;
    }
    std::string trailer(32, '\0');
    trailer[6] = 2; // bytes of an offset
    trailer[7] = 1; // bytes of a reference
    trailer[15] = static_cast<char>(objects.size());
    trailer[30] = static_cast<char>(list.size() >> 8U);
    trailer[31] = static_cast<char>(list.size());
    return list + offsets + trailer;
}

} // namespace

TEST(StoredTranscript, IsReadFromAnotherHand)
{
    const auto entry = TranscriptCoding::decoded(R"( {
        "duration": 75, "createdAt": 788918400, "unknown": [{}], "harness": null,
        "appName": "", "rawText": "um hi", "text": "Hi \u00e9\ud83d\ude00",
        "id": "e621e1f8-c36c-495a-93fc-0c247a3e6e5f" } )");
    EXPECT_EQ(entry.id.text(), "E621E1F8-C36C-495A-93FC-0C247A3E6E5F");
    EXPECT_EQ(entry.text, "Hi é😀");
    EXPECT_EQ(entry.appName, "");
    EXPECT_EQ(entry.bundleIdentifier, std::nullopt);
    EXPECT_EQ(entry.createdAt, utc("2026-01-01 00:00:00"));
    EXPECT_EQ(entry.duration, 75);
    EXPECT_EQ(entry.harness, std::nullopt);
    EXPECT_EQ(entry.rawText, "um hi");
}

TEST(StoredTranscript, NeedsItsFiveFields)
{
    const nlohmann::json whole { { "id", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F" }, { "text", "" }, { "appName", "" },
        { "createdAt", 0 }, { "duration", 0 } };
    EXPECT_NO_THROW(TranscriptCoding::decoded(whole.dump()));
    for (const auto& [key, value] : whole.items()) {
        auto damaged = whole;
        damaged.erase(key);
        EXPECT_THROW(TranscriptCoding::decoded(damaged.dump()), StoredFormatError) << key << " absent";
        damaged[key] = nullptr;
        EXPECT_THROW(TranscriptCoding::decoded(damaged.dump()), StoredFormatError) << key << " null";
        damaged[key] = nlohmann::json::array();
        EXPECT_THROW(TranscriptCoding::decoded(damaged.dump()), StoredFormatError) << key << " of another type";
    }
}

TEST(StoredTranscript, IsRefusedWhereAValueIsNone)
{
    const nlohmann::json whole { { "id", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F" }, { "text", "" }, { "appName", "" },
        { "createdAt", 0 }, { "duration", 0 } };
    const auto with = [&](const char* key, const nlohmann::json& value) {
        auto changed = whole;
        changed[key] = value;
        return changed.dump();
    };
    EXPECT_THROW(TranscriptCoding::decoded(with("id", "1")), StoredFormatError);
    EXPECT_THROW(TranscriptCoding::decoded(with("harness", "Another")), StoredFormatError);
    EXPECT_THROW(TranscriptCoding::decoded(with("bundleIdentifier", 1)), StoredFormatError);
    EXPECT_THROW(TranscriptCoding::decoded(with("rawText", 1)), StoredFormatError);
    EXPECT_EQ(TranscriptCoding::decoded(with("harness", "Codex")).harness, CodingHarness::codex);
    for (const char* none : { "", "[]", "null", "{} {}", "\"text\"", "{\"id\":" })
        EXPECT_THROW(TranscriptCoding::decoded(none), StoredFormatError) << none;
}

TEST(StoredStatistics, AreAListOfIdsAndContributionsInTurn)
{
    LifetimeStatistics statistics;
    EXPECT_EQ(encoded(statistics), R"({"contributions":[]})");
    statistics.include({ numberedUUID(1), { 3, 2.5, utc("2026-01-01 00:00:00") } });
    statistics.include({ numberedUUID(2), { 0, 0, std::nullopt } });
    EXPECT_EQ(encoded(statistics),
        R"({"contributions":["00000000-0000-0000-0000-000000000001",)"
        R"({"words":3,"recordingTime":2.5,"createdAt":788918400},)"
        R"("00000000-0000-0000-0000-000000000002",{"words":0,"recordingTime":0}]})");
    EXPECT_EQ(decodedStatistics(encoded(statistics)).items(), statistics.items());
}

TEST(StoredStatistics, AreTheSameWhetherEncodedAtOnceOrStepByStep)
{
    constexpr uint32_t many = 7'000; // some of the blocks that the text is kept in
    LifetimeStatistics statistics;
    StatisticsText text;
    const auto include = [&](uint32_t number, int64_t words) {
        return statistics.include({ numberedUUID(number), { words, number / 7.0, std::nullopt } });
    };
    for (uint32_t i = 0; i < many; i += 100) {
        std::vector<size_t> places;
        for (uint32_t j = i; j < i + 100; ++j)
            places.push_back(include(j, j));
        text.update(statistics, places);
    }
    for (uint32_t i = 0; i < many; i += 900)
        text.update(statistics, { include(i, i * 1'000'000) });
    std::string stepwise;
    for (const auto piece : text.pieces())
        stepwise += piece;
    EXPECT_EQ(stepwise, encoded(statistics));
    EXPECT_EQ(decodedStatistics(stepwise).items(), statistics.items());
}

TEST(StoredStatistics, AreReadFromAnotherHand)
{
    const auto statistics = decodedStatistics(R"({"more":1,"contributions":[
        "e621e1f8-c36c-495a-93fc-0c247a3e6e5f",{"recordingTime":4,"createdAt":788918400.5,"words":7.0,"more":null},
        "00000000-0000-0000-0000-000000000001",{"words":1,"recordingTime":1,"createdAt":null},
        "E621E1F8-C36C-495A-93FC-0C247A3E6E5F",{"words":2,"recordingTime":0.5}]})");
    ASSERT_EQ(statistics.items().size(), 2U);
    EXPECT_EQ(statistics.items()[0].contribution, (LifetimeStatistics::Contribution { 2, 0.5, std::nullopt }));
    EXPECT_EQ(statistics.items()[1].contribution, (LifetimeStatistics::Contribution { 1, 1, std::nullopt }));
}

TEST(StoredStatistics, AreRefusedWhole)
{
    const std::string id = R"("E621E1F8-C36C-495A-93FC-0C247A3E6E5F")";
    for (const std::string& contributions : { id, id + ",1", id + ",{}", id + R"(,{"words":1})",
             id + R"(,{"recordingTime":1})", id + R"(,{"words":1.5,"recordingTime":1})",
             id + R"(,{"words":9223372036854775808,"recordingTime":1})", id + R"(,{"words":1e300,"recordingTime":1})",
             id + R"(,{"words":"1","recordingTime":1})", id + R"(,{"words":1,"recordingTime":1,"createdAt":"x"})",
             std::string(R"("x",{"words":1,"recordingTime":1})"), R"({"words":1,"recordingTime":1},)" + id })
        EXPECT_THROW(decodedStatistics("{\"contributions\":[" + contributions + "]}"), StoredFormatError)
            << contributions;
    for (const char* none : { "", "{}", "[]", R"({"contributions":{}})", R"({"contributions":null})" })
        EXPECT_THROW(decodedStatistics(none), StoredFormatError) << none;
}

TEST(StoredAppOrder, IsAListOfTexts)
{
    EXPECT_THAT(decodedAppOrder(xml("<array><string>Mail</string><string>Caf\u00e9 &amp; Co</string></array>")),
        ElementsAre("Mail", "Café & Co"));
    EXPECT_THAT(decodedAppOrder(xml("<array/>")), IsEmpty());
    const std::string utf16("\x62\0C\0\xE9", 5);
    EXPECT_THAT(decodedAppOrder(binary({ std::string("\xA3\1\2\1", 4), "\x54Mail", utf16 })),
        ElementsAre("Mail", "Cé", "Mail"));
}

TEST(StoredAppOrder, IsNothingElse)
{
    for (const std::string& other : { std::string(), std::string("text"), xml(""), xml("<string>a</string>"),
             xml("<array><integer>1</integer></array>"), xml("<array><array/></array>"), xml("<dict/>"),
             xml("<array><string>\xFF</string></array>"), std::string("bplist00"),
             binary({ "\x51"
                      "a" }),
             binary({ "\xA1\1", "\x10\1" }), binary({ "\xA1\1", "\xA0" }),
             std::string("bplist00") + std::string(32, '\xFF') })
        EXPECT_THROW(decodedAppOrder(other), StoredFormatError) << other;
}

TEST(StoredAppOrder, IsRefusedBeforeItGrowsBeyondMeasure)
{
    // Four lists, each of 50 times the next: six million texts in some 300 bytes.
    std::vector<std::string> objects;
    for (char level = 1; level <= 4; ++level)
        objects.push_back("\xAF\x10\x32" + std::string(50, level));
    objects.push_back("\x51"
                      "a");
    EXPECT_THROW(decodedAppOrder(binary(objects)), StoredFormatError);
    // A list that holds itself.
    EXPECT_THROW(decodedAppOrder(binary({ std::string("\xA1\0", 2) })), StoredFormatError);

    std::string deep;
    for (int i = 0; i < 2'000; ++i)
        deep += "<array>";
    EXPECT_THROW(decodedAppOrder(xml(deep)), StoredFormatError);
    EXPECT_THROW(
        decodedAppOrder(xml("<array>" + std::string(maximumAppOrderSize, ' ') + "</array>")), StoredFormatError);
}

TEST(ReferenceDates, GiveTheirSecondsBack)
{
    for (const double seconds : { 0.0, 1.5, -1.25, 788918400.0, 790212345.1234567, 812345678.9999999, -978307200.5 })
        EXPECT_EQ(ReferenceDate::seconds(ReferenceDate::date(seconds)), seconds);
    EXPECT_EQ(ReferenceDate::date(0), utc("2001-01-01 00:00:00"));
    EXPECT_EQ(ReferenceDate::seconds(utc("2000-12-31 23:59:59")), -1);
}

TEST(ReferenceDates, StayWithinTheYearsThatADateCanHold)
{
    EXPECT_EQ(ReferenceDate::date(1e300), ReferenceDate::date(63113904000)); // the year 4001
    EXPECT_EQ(ReferenceDate::date(-1e300), ReferenceDate::date(-63114076800)); // the year 1
    EXPECT_LT(ReferenceDate::date(-1e300), ReferenceDate::date(0));
    EXPECT_GT(ReferenceDate::date(HUGE_VAL), ReferenceDate::date(0));
}
