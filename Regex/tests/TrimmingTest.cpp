// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Regex/Trimming.h>

#include <gmock/gmock.h>

namespace Regex {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Trimming, TakesUnicodesBlanksAndLineBreaks)
{
    EXPECT_EQ(trimmed(" \t\r\n\v\f a  b\u00A0\u2003\u3000\u0085\u2028\u2029"), "a  b");
    EXPECT_EQ(trimmed("a"), "a");
    EXPECT_EQ(trimmed(" \n\t "), "");
    EXPECT_EQ(trimmed(""), "");
}

TEST(Trimming, LeavesWhatIsNoUTF8)
{
    EXPECT_EQ(trimmed(" \xff "), "\xff");
    EXPECT_EQ(trimmed("\xe2\x80 "), "\xe2\x80"); // the beginning of a blank
}

TEST(Trimming, TakesJustTheCharactersThatAreNamed)
{
    EXPECT_EQ(trimmedOf(", a,b. ", " ,."), "a,b");
    EXPECT_EQ(trimmedOf("\na ", " "), "\na");
    EXPECT_EQ(trimmedOf(" ,,", " ,."), "");
}

TEST(Trimming, TakesBlanksAndTheCharactersThatAreNamed)
{
    EXPECT_EQ(trimmedOfBlanksAnd("\n, \u00A0.a, b\t.", ",."), "a, b");
    EXPECT_EQ(trimmedOfBlanksAnd(" .\n.", "."), "");
}

TEST(Trimming, CutsAtLineBreaksOfAnyKind)
{
    EXPECT_THAT(lines("a\nb\r\nc\u2028d"), ElementsAre("a", "b", "", "c", "d"));
    EXPECT_THAT(lines("a\n"), ElementsAre("a", ""));
    EXPECT_THAT(lines(""), ElementsAre(""));
}

TEST(Trimming, CutsAtBlanks)
{
    EXPECT_THAT(piecesBetweenBlanks("  buy\u00A0some \n milk "), ElementsAre("buy", "some", "milk"));
    EXPECT_THAT(piecesBetweenBlanks(" \t"), IsEmpty());
}

TEST(Trimming, CutsAtWhatIsNoLetter)
{
    EXPECT_THAT(runsOfLetters("it's 2 e\u0301clairs!"), ElementsAre("it", "s", "e\u0301clairs"));
    EXPECT_THAT(runsOfLetters("7\xff"), IsEmpty());
}

} // namespace
} // namespace Regex
