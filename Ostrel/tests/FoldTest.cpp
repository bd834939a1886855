// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Fold.h"

#include <gtest/gtest.h>

using Ostrel::beginsLowerCase;
using Ostrel::fold;

TEST(Fold, KeepsLettersNumbersAndTheApostrophe)
{
    EXPECT_EQ(fold("Don't!"), "don't");
    EXPECT_EQ(fold("DON'T"), fold("don't"));
    EXPECT_EQ(fold("\u201cR2-D2,\u201d"), "r2d2");
    EXPECT_EQ(fold(" .,?!- "), "");
    EXPECT_EQ(fold(""), "");
}

TEST(Fold, KeepsDiacritics)
{
    EXPECT_NE(fold("cafe"), fold("caf\u00e9"));
    EXPECT_EQ(fold("CAF\u00c9"), "caf\u00e9");
    EXPECT_EQ(fold("cafe\u0301"), "cafe\u0301");
}

TEST(Fold, FoldsWithoutRegardToLanguage)
{
    EXPECT_EQ(fold("I\u0130"), "ii\u0307");
    EXPECT_EQ(fold("STRASSE"), fold("Stra\u00dfe"));
    EXPECT_EQ(fold("\u039f\u0394\u039f\u03a3"), fold("\u03bf\u03b4\u03cc\u03c2").replace(4, 2, "\u03bf"));
}

TEST(Fold, CopesWithCharactersBeyondTheBasicPlane)
{
    EXPECT_EQ(fold("\U00010400"), "\U00010428"); // DESERET CAPITAL LETTER LONG I
    EXPECT_EQ(fold("\U0001F600"), "");
}

TEST(BeginsLowerCase, LooksAtTheFirstCharacter)
{
    EXPECT_TRUE(beginsLowerCase("was"));
    EXPECT_TRUE(beginsLowerCase("\u00e9t\u00e9"));
    EXPECT_FALSE(beginsLowerCase("Was"));
    EXPECT_FALSE(beginsLowerCase("\u00c9t\u00e9"));
    EXPECT_FALSE(beginsLowerCase("1st"));
    EXPECT_FALSE(beginsLowerCase("'tis"));
    EXPECT_FALSE(beginsLowerCase(""));
}
