// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Regex/Pattern.h>
#include <Sorvane/DictationFormatting.h>

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

namespace Sorvane::DictationFormatting {
namespace {

TEST(NeedsVerbatim, SeesQuotesAndCode)
{
    EXPECT_TRUE(needsVerbatim("run `make`"));
    EXPECT_TRUE(needsVerbatim("he said \"no\""));
    EXPECT_TRUE(needsVerbatim("he said “no”"));
    EXPECT_TRUE(needsVerbatim("he said “no"));
    EXPECT_FALSE(needsVerbatim("he said no”"));
    EXPECT_FALSE(needsVerbatim("it's ‘fine’"));
    EXPECT_FALSE(needsVerbatim(""));
}

TEST(NeedsVerbatim, SeesThatTheSpeakerWantsTheLetter)
{
    EXPECT_TRUE(needsVerbatim("Write this Verbatim please"));
    EXPECT_TRUE(needsVerbatim("he LITERALLY ran"));
    EXPECT_FALSE(needsVerbatim("a literal meaning"));
}

TEST(NeedsVerbatim, SeesThatTheSpeakerTalksAboutAWord)
{
    EXPECT_TRUE(needsVerbatim("define the word um"));
    EXPECT_TRUE(needsVerbatim("Explain what a Question Mark does"));
    EXPECT_FALSE(needsVerbatim("um define it"));
    EXPECT_FALSE(needsVerbatim("the words are umbrella and commas"));
}

TEST(NeedsVerbatim, KnowsEachWordForWordsAndEachThatCleaningTakesAway)
{
    for (const std::string talk : { "word", "label", "phrase", "term", "meaning", "explain", "define" }) {
        for (const std::string taken : { "um", "uh", "comma", "question mark", "period" }) {
            EXPECT_TRUE(needsVerbatim("the " + talk + " is " + taken + " here")) << talk << ", " << taken;
            EXPECT_FALSE(needsVerbatim("the " + talk + "s are " + taken + " here")) << talk << ", " << taken;
            EXPECT_FALSE(needsVerbatim("the " + talk + " is " + taken + "s here")) << talk << ", " << taken;
        }
    }
    EXPECT_TRUE(needsVerbatim("word-um"));
    EXPECT_FALSE(needsVerbatim("the word question  mark")); // one blank between the two
    EXPECT_FALSE(needsVerbatim("the word is full stop"));
}

TEST(NeedsVerbatim, LooksForTheWordInItsOwnLine)
{
    EXPECT_FALSE(needsVerbatim("define the word\num, no"));
    EXPECT_FALSE(needsVerbatim("define the word\r\num, no"));
    EXPECT_TRUE(needsVerbatim("first line\nthe term period"));
    EXPECT_TRUE(needsVerbatim("the word is good\nthe word um is not"));
}

// What is searched is shaped to be fast; it must find what the plain pattern finds.
TEST(NeedsVerbatim, AgreesWithThePlainPattern)
{
    const auto plain = Regex::rx("(?i)\\b(?:word|label|phrase|term|meaning|explain|define)\\b.*"
                                 "\\b(?:um|uh|comma|question mark|period)\\b");
    constexpr std::array pieces { "word", "Term", "um", "UH", "question", "mark", " ", " ", " ", " ", " ", "\n", "\r",
        "\u2028", "-", "x" };
    std::mt19937 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same texts every time
    int positive = 0;
    for (int i = 0; i < 2'000; ++i) {
        std::string text;
        for (int j = 0; j < 20; ++j)
            text += pieces[random() % pieces.size()];
        EXPECT_EQ(needsVerbatim(text), plain.contains(text)) << text;
        positive += needsVerbatim(text) ? 1 : 0;
    }
    EXPECT_GT(positive, 100);
}

TEST(NeedsVerbatim, IsNotMisledByALongLine)
{
    std::string text;
    while (text.size() < 16'000)
        text += "word ";
    EXPECT_FALSE(needsVerbatim(text));
    EXPECT_TRUE(needsVerbatim(text + "um"));
}

} // namespace
} // namespace Sorvane::DictationFormatting
