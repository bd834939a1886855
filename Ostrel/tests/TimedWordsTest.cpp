// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TimedWords.h"

#include <gtest/gtest.h>

using namespace Ostrel;

namespace {

const std::vector<std::string> vocabulary { "\u2581he", "llo", "\u2581world", "\u2581", "<en>", ".", "a\u2581b", "<" };

std::vector<Word> words(WindowTokens window, double timeOffset = 0)
{
    return timedWords(window, vocabulary, 0.5, timeOffset);
}

} // namespace

TEST(TimedWords, StartsAWordAtAMarkedPiece)
{
    EXPECT_EQ(words({ .tokens = { 0, 1, 2 }, .frames = { 0, 2, 5 }, .ends = { 2, 4, 7 } }),
        (std::vector<Word> { { "hello", 0, 2 }, { "world", 2.5, 3.5 } }));
}

TEST(TimedWords, AddsTheWindowsOffset)
{
    EXPECT_EQ(words({ .tokens = { 0 }, .frames = { 3 }, .ends = { 5 } }, 100),
        (std::vector<Word> { { "he", 101.5, 102.5 } }));
}

TEST(TimedWords, TakesAWordsStartFromItsFirstPieceWithText)
{
    EXPECT_EQ(
        words({ .tokens = { 3, 1 }, .frames = { 1, 4 }, .ends = { 2, 6 } }), (std::vector<Word> { { "llo", 2, 3 } }));
    EXPECT_EQ(words({ .tokens = { 0, 3, 2 }, .frames = { 1, 4, 6 }, .ends = { 2, 5, 8 } }),
        (std::vector<Word> { { "he", 0.5, 1 }, { "world", 3, 4 } }));
}

TEST(TimedWords, KeepsTheFurthestEndOfTheWholeWindow)
{
    EXPECT_EQ(words({ .tokens = { 0, 2 }, .frames = { 0, 1 }, .ends = { 9, 2 } }),
        (std::vector<Word> { { "he", 0, 4.5 }, { "world", 0.5, 4.5 } }));
}

TEST(TimedWords, NeverEndsAWordBeforeItsStart)
{
    EXPECT_EQ(words({ .tokens = { 0 }, .frames = { 6 }, .ends = { 2 } }), (std::vector<Word> { { "he", 3, 3 } }));
    EXPECT_EQ(words({ .tokens = { 0 }, .frames = { 6 }, .ends = { -4 } }), (std::vector<Word> { { "he", 3, 3 } }));
}

TEST(TimedWords, DropsControlPiecesWithoutEndingTheWord)
{
    EXPECT_EQ(words({ .tokens = { 4, 0, 4, 1 }, .frames = { 0, 1, 2, 3 }, .ends = { 40, 2, 40, 4 } }),
        (std::vector<Word> { { "hello", 0.5, 2 } }));
    EXPECT_TRUE(words({ .tokens = { 4, 4 }, .frames = { 0, 1 }, .ends = { 1, 2 } }).empty());
    EXPECT_EQ(words({ .tokens = { 7 }, .frames = { 0 }, .ends = { 1 } }).front().text, "<");
}

TEST(TimedWords, SkipsTokensOutsideTheVocabulary)
{
    EXPECT_EQ(words({ .tokens = { 8, 0, -1, 1'000'000, 1 }, .frames = { 0, 1, 2, 3, 4 }, .ends = { 9, 2, 9, 9, 5 } }),
        (std::vector<Word> { { "hello", 0.5, 2.5 } }));
}

TEST(TimedWords, GluesPunctuationToTheWordBefore)
{
    EXPECT_EQ(words({ .tokens = { 0, 5, 2 }, .frames = { 0, 1, 2 }, .ends = { 1, 2, 3 } }).front().text, "he.");
}

TEST(TimedWords, RemovesMarksInsideAPiece)
{
    EXPECT_EQ(words({ .tokens = { 0, 6 }, .frames = { 0, 1 }, .ends = { 1, 2 } }).front().text, "heab");
}

TEST(TimedWords, TakesAbsentFramesAndEndsAsNone)
{
    EXPECT_EQ(words({ .tokens = { 0, 2 }, .frames = { 4 }, .ends = {} }),
        (std::vector<Word> { { "he", 2, 2 }, { "world", 0, 0 } }));
}

TEST(TimedWords, MakesNothingOfNoTokens)
{
    EXPECT_TRUE(words({}).empty());
}
