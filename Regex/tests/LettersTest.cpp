// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Regex/Letters.h>

#include <gtest/gtest.h>

namespace Regex {
namespace {

TEST(Letters, AreToldFromDigitsAndSymbols)
{
    EXPECT_TRUE(isLetter(U'a'));
    EXPECT_TRUE(isLetter(U'ß'));
    EXPECT_TRUE(isLetter(U'猫'));
    EXPECT_TRUE(isLetter(U'\u0301')); // the acute on a letter
    EXPECT_FALSE(isLetter(U'7'));
    EXPECT_FALSE(isLetter(U'\''));
    EXPECT_TRUE(isLetterOrNumber(U'7'));
    EXPECT_TRUE(isLetterOrNumber(U'½'));
    EXPECT_FALSE(isLetterOrNumber(U'_'));
    EXPECT_TRUE(containsLetterOrNumber("… 7"));
    EXPECT_FALSE(containsLetterOrNumber("… \U0001F600 \xff"));
}

TEST(Letters, BecomeLowerCase)
{
    EXPECT_EQ(lowercased("ÄPFEL Und İ"), "äpfel und i\u0307");
    EXPECT_EQ(lowercased("\xff"), "\uFFFD");
}

TEST(Letters, ChangeCaseAtTheStartOnly)
{
    EXPECT_EQ(firstUppercased("buy MILK"), "Buy MILK");
    EXPECT_EQ(firstUppercased("éclair"), "Éclair");
    EXPECT_EQ(firstUppercased("e\u0301clair"), "E\u0301clair");
    EXPECT_EQ(firstUppercased("ßa"), "SSa");
    EXPECT_EQ(firstUppercased("7 up"), "7 up");
    EXPECT_EQ(firstUppercased(""), "");
    EXPECT_EQ(firstLowercased("Buy MILK"), "buy MILK");
}

TEST(Letters, AreComparedWithoutCase)
{
    EXPECT_TRUE(equalIgnoringCase("Straße", "STRASSE"));
    EXPECT_TRUE(equalIgnoringCase("", ""));
    EXPECT_FALSE(equalIgnoringCase("a", "ab"));
    EXPECT_FALSE(equalIgnoringCase("é", "e"));
}

TEST(Letters, AreFoundAtTheBeginningWithoutCase)
{
    EXPECT_EQ(prefixLengthIgnoringCase("Straße 7", "STRASSE"), 7);
    EXPECT_EQ(prefixLengthIgnoringCase("STRASSE 7", "straße"), 7);
    EXPECT_EQ(prefixLengthIgnoringCase("abc", ""), 0);
    EXPECT_EQ(prefixLengthIgnoringCase("abc", "ABC"), 3);
    EXPECT_EQ(prefixLengthIgnoringCase("ab", "abc"), std::nullopt);
    EXPECT_EQ(prefixLengthIgnoringCase("xabc", "abc"), std::nullopt);
    EXPECT_EQ(prefixLengthIgnoringCase("ß", "s"), std::nullopt); // not half a character
}

TEST(Letters, AreCountedAsAReaderDoes)
{
    EXPECT_EQ(characterCount(""), 0);
    EXPECT_EQ(characterCount("e\u0301a"), 2);
    EXPECT_EQ(characterCount("\U0001F1E9\U0001F1EA"), 1); // a flag
    EXPECT_EQ(characterCount("\xff!"), 2);
}

} // namespace
} // namespace Regex
