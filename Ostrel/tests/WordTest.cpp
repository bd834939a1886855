// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Ostrel/DecodingError.h>
#include <Ostrel/OstrelError.h>
#include <Ostrel/Result.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using nlohmann::json;
using Ostrel::DecodingError;
using Ostrel::OstrelError;
using Ostrel::Result;
using Ostrel::Word;

TEST(Word, SurvivesARoundTripThroughJson)
{
    const Word word { "caf\u00e9,", 0.1, 1.0 / 3 };
    EXPECT_EQ(json::parse(json(word).dump()).get<Word>(), word);
    EXPECT_EQ(json(Word { "a", 1, 2 }), json::parse(R"({"text": "a", "start": 1.0, "end": 2.0})"));
}

TEST(Word, IsNotReadFromAnIncompleteOrWronglyTypedObject)
{
    EXPECT_THROW(json::parse(R"({"text": "a", "start": 1})").get<Word>(), DecodingError);
    EXPECT_THROW(json::parse(R"({"text": 1, "start": 1, "end": 2})").get<Word>(), DecodingError);
    EXPECT_THROW(json::parse(R"({"text": "a", "start": "1", "end": 2})").get<Word>(), DecodingError);
    EXPECT_THROW(json::parse("[]").get<Word>(), DecodingError);
}

TEST(Word, LastsFromStartToEnd)
{
    EXPECT_EQ((Word { "a", 1.5, 4 }.duration()), 2.5);
}

TEST(Result, RealtimeFactorIsAudioOverProcessing)
{
    EXPECT_EQ((Result { .text = {}, .words = {}, .duration = 30, .processingTime = 2 }.realtimeFactor()), 15);
    EXPECT_EQ((Result { .text = {}, .words = {}, .duration = 30, .processingTime = 0 }.realtimeFactor()), 0);
}

TEST(OstrelError, SaysWhatIsWrong)
{
    EXPECT_EQ(OstrelError::invalidModel("x").description(), "invalid model: x");
    EXPECT_EQ(OstrelError::invalidAudio("no samples").description(), "invalid audio: no samples");
    EXPECT_EQ(
        OstrelError::unsupportedPlatform().description(), "Ostrel requires Core ML and runs on Apple platforms only");
    EXPECT_EQ(OstrelError::unsupportedPlatform().which(), OstrelError::Case::unsupportedPlatform);
}
