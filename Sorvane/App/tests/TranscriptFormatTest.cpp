// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TranscriptFormat.h"

#include "Cue.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace Sorvane;

namespace {

Ostrel::Result twoSentences()
{
    Ostrel::Result result;
    result.text = "Call Ann & Bob. Now.";
    result.words = { { "Call", 0.5, 0.75 }, { "Ann", 0.75, 1.0 }, { "&", 1.0, 1.125 }, { "Bob.", 1.125, 1.5 },
        { "Now.", 1.625, 2.0 } };
    result.duration = 2.5;
    result.processingTime = 0.125;
    return result;
}

} // namespace

TEST(TranscriptFormat, PlainTextIsTheWordsAndTheLengths)
{
    EXPECT_EQ(
        formatted(twoSentences(), TranscriptFormat::text), "Call Ann & Bob. Now.\n2.50s audio, 0.12s processing\n");
    EXPECT_EQ(formatted(Ostrel::Result {}, TranscriptFormat::text), "\n0.00s audio, 0.00s processing\n");
}

TEST(TranscriptFormat, JsonHoldsEveryWordWithItsTimes)
{
    const auto document = nlohmann::json::parse(formatted(twoSentences(), TranscriptFormat::json));
    EXPECT_EQ(document["text"], "Call Ann & Bob. Now.");
    EXPECT_EQ(document["words"].size(), 5u);
    EXPECT_EQ(document["words"][3], (nlohmann::json { { "text", "Bob." }, { "start", 1.125 }, { "end", 1.5 } }));
    EXPECT_EQ(document["duration"], 2.5);
    EXPECT_EQ(document["processingTime"], 0.125);
}

TEST(TranscriptFormat, JsonReplacesBytesThatAreNoText)
{
    Ostrel::Result result;
    result.text = "a\xFF";
    EXPECT_EQ(nlohmann::json::parse(formatted(result, TranscriptFormat::json))["text"], "a\xEF\xBF\xBD");
}

TEST(TranscriptFormat, SubtitlesHaveACueForEachSentence)
{
    EXPECT_EQ(formatted(twoSentences(), TranscriptFormat::srt),
        "1\n00:00:00,500 --> 00:00:01,500\nCall Ann & Bob.\n\n"
        "2\n00:00:01,625 --> 00:00:02,000\nNow.\n\n");
    EXPECT_EQ(formatted(twoSentences(), TranscriptFormat::vtt),
        "WEBVTT\n\n00:00:00.500 --> 00:00:01.500\nCall Ann &amp; Bob.\n\n"
        "00:00:01.625 --> 00:00:02.000\nNow.\n\n");
    EXPECT_EQ(formatted(Ostrel::Result {}, TranscriptFormat::vtt), "WEBVTT\n\n");
}

TEST(Cue, BreaksAtPausesAndBeforeItGrowsTooLong)
{
    const std::vector<Ostrel::Word> words { { "one", 0, 1 }, { "two", 1.9, 2.5 }, { "three", 3.5, 4 },
        { "four", 4, 11 }, { "five", 11, 12 } };
    const auto cut = cues(words);
    ASSERT_EQ(cut.size(), 4u);
    EXPECT_EQ(cut[0].text, "one two");
    EXPECT_EQ(cut[1].text, "three");
    EXPECT_EQ(cut[2].text, "four");
    EXPECT_EQ(cut[3].text, "five");
}

TEST(Cue, NeverOutgrowsTwoLines)
{
    std::vector<Ostrel::Word> words;
    for (int i = 0; i < 40; ++i)
        words.push_back({ "señor", i * 0.1, i * 0.1 + 0.1 });
    const auto cut = cues(words);
    ASSERT_EQ(cut.size(), 3u);
    EXPECT_EQ(cut[0].text.size(), 14u * 7u - 1u); // 14 words of five characters and a blank: 83 characters
}

TEST(Cue, WrapsNearTheMiddle)
{
    EXPECT_EQ(wrapped("short enough"), "short enough");
    EXPECT_EQ(wrapped("the quick brown fox jumps over the lazy dog again"),
        "the quick brown fox jumps\nover the lazy dog again");
    const std::string unbreakable(60, 'x');
    EXPECT_EQ(wrapped(unbreakable), unbreakable);
}

TEST(Cue, TimestampsCarryOverAndNeverGoBelowZero)
{
    EXPECT_EQ(timestamp(3723.004, ','), "01:02:03,004");
    EXPECT_EQ(timestamp(59.9996, '.'), "00:01:00.000");
    EXPECT_EQ(timestamp(-1, '.'), "00:00:00.000");
    EXPECT_EQ(timestamp(360000, ','), "100:00:00,000");
}
