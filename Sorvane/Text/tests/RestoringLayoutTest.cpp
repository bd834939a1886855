// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ScriptedTagger.h"

#include <Sorvane/DictationFormatting.h>

#include <gtest/gtest.h>

namespace Sorvane::DictationFormatting {
namespace {

const ScriptedTagger tagger;

const Enumeration chores { "I need to", { "Buy milk", "Call mom", "Write the report" } };
const std::string own = "I need to:\n1. Buy milk\n2. Call mom\n3. Write the report";

TEST(RestoringLayout, RendersTheIntroAboveNumberedLines)
{
    EXPECT_EQ(chores.render(chores.items), own);
    EXPECT_EQ((Enumeration { "", { "A", "B" } }.render({ "x", "y" })), "1. x\n2. y");
}

TEST(RestoringLayout, TakesTheLinesOfAList)
{
    EXPECT_EQ(chores.restoringLayout("To do:\n\n- Buy some milk\n* Call mom\n \t• Write it\n", tagger),
        "I need to:\n1. Buy some milk\n2. Call mom\n3. Write it");
    EXPECT_EQ(chores.restoringLayout("1. Buy milk\r\n2) Call Mom.\r\n3.  Write the report", tagger),
        "I need to:\n1. Buy milk\n2. Call Mom.\n3. Write the report");
}

TEST(RestoringLayout, TakesItsOwnItemWhereALineStillSpeaksTheNumber)
{
    EXPECT_EQ(chores.restoringLayout("1. Number one buy\n2. Two call mom!\n3. 3 reports", tagger), own);
    EXPECT_EQ(chores.restoringLayout("1. Two milks\n2. Call mom!\n3. Threefold", tagger),
        "I need to:\n1. Two milks\n2. Call mom!\n3. Threefold");
}

TEST(RestoringLayout, TakesAListThatStillSpeaksItsNumbers)
{
    const Enumeration list { "Here is my list", { "Buy milk", "Call mom", "Write" } };
    EXPECT_EQ(list.restoringLayout("Here is my LIST: one, buy oat milk; two, call mom; three, write up.", tagger),
        "Here is my list:\n1. Buy oat milk\n2. Call mom\n3. Write up");
}

TEST(RestoringLayout, DistrustsAListThatIsAnother)
{
    const Enumeration list { "Here is my list", { "Buy milk", "Call mom", "Write" } };
    const std::string unchanged = list.render(list.items);
    EXPECT_EQ(list.restoringLayout("This is my list: one, buy milk; two, call mom; three, write.", tagger), unchanged);
    EXPECT_EQ(list.restoringLayout("Here is my list: one, buy milk; two, go home; three, write.", tagger), unchanged);
    EXPECT_EQ(list.restoringLayout("Here is my list: 1. buy milk 2. call mom 3. write 4. rest", tagger), unchanged);
}

TEST(RestoringLayout, TakesTheListFromASentence)
{
    EXPECT_EQ(chores.restoringLayout("I NEED TO buy oat milk, call mom, and write the report.", tagger),
        "I need to:\n1. Buy oat milk\n2. Call mom\n3. Write the report");
    EXPECT_EQ(chores.restoringLayout("I need to: buy milk;  call mom   and\nwrite the report.\n", tagger), own);
}

TEST(RestoringLayout, DistrustsASentenceThatIsNotTheList)
{
    EXPECT_EQ(chores.restoringLayout("I want to buy oat milk, call mom, and write the report.", tagger), own);
    EXPECT_EQ(chores.restoringLayout("I need to buy oat milk, and write the report.", tagger), own);
    EXPECT_EQ(chores.restoringLayout("I need to buy oat milk, write the report, and call mom.", tagger), own);
    EXPECT_EQ(chores.restoringLayout("I need to buy oat milk, the, and write the report.", tagger), own);
}

TEST(RestoringLayout, WantsAnIntroForASentence)
{
    const Enumeration list { "", { "Buy milk", "Call mom" } };
    EXPECT_EQ(list.restoringLayout("Buy oat milk and call mom.", tagger), "1. Buy milk\n2. Call mom");
}

TEST(RestoringLayout, TakesNoWordThatSaysNothingForACommonOne)
{
    for (const std::string word : { "a", "an", "the", "and", "or", "to", "of", "at", "in", "on", "for", "um", "uh" }) {
        const Enumeration list { "List", { word + " milk", "Bread" } };
        EXPECT_EQ(list.restoringLayout("List " + word + " beer, bread", tagger), list.render(list.items)) << word;
    }
    const Enumeration list { "List", { "My milk", "Bread" } };
    EXPECT_EQ(list.restoringLayout("List my beer; Bread", tagger), "List:\n1. My beer\n2. Bread");
}

TEST(RestoringLayout, TakesALineOfAnyMark)
{
    const Enumeration list { "", { "A", "B", "C", "D", "E" } };
    EXPECT_EQ(list.restoringLayout("- a\u2028\t* b\n\u2022\tc\r\n12. d\n 7)  e\n8: f\n9.g\n-h\n+ i\n\t \n", tagger),
        "1. a\n2. b\n3. c\n4. d\n5. e");
}

TEST(RestoringLayout, KeepsItsIntroWhateverTheModelMadeOfIt)
{
    EXPECT_EQ(chores.restoringLayout("You should:\n1. Buy milk\n2. Call mom\n3. Rest", tagger),
        "I need to:\n1. Buy milk\n2. Call mom\n3. Rest");
    EXPECT_EQ(chores.restoringLayout("1. Buy milk\n2. Call mom\n3. Rest", tagger),
        "I need to:\n1. Buy milk\n2. Call mom\n3. Rest");
}

TEST(RestoringLayout, KeepsItsItemsIfTheLinesAreTooMany)
{
    EXPECT_EQ(chores.restoringLayout("- Buy milk\n- Call mom\n- Write\n- Sleep", tagger), own);
    EXPECT_EQ(chores.restoringLayout("", tagger), own);
}

TEST(RestoringLayout, ComparesLettersAndNotTheirCaseOrPunctuation)
{
    const Enumeration list { "I need to", { "Rép\u00E9ter l'été", "B" } };
    EXPECT_EQ(list.restoringLayout("I need to ÉTÉ! and (b)", tagger), "I need to:\n1. ÉTÉ!\n2. (b)");
}

TEST(RestoringLayout, IsNotMisledByALongRunOfBlanks)
{
    EXPECT_EQ(chores.restoringLayout("I need to buy milk" + std::string(16'000, ' ') + ".", tagger), own);
}

} // namespace
} // namespace Sorvane::DictationFormatting
