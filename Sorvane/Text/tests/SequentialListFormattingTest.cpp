// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/SequentialListFormatting.h>

#include <gtest/gtest.h>

namespace Sorvane::SequentialListFormatting {
namespace {

// The layout of a text that the model left as it was.
std::string layout(const std::string& text)
{
    return restoringLayout(text, text);
}

void expectProse(const std::string& text)
{
    EXPECT_EQ(layout(text), text);
}

TEST(SequentialListFormatting, NumbersTheSteps)
{
    EXPECT_EQ(
        layout("First, wash the car, then buy milk, and then call mom."), "1. Wash the car\n2. Buy milk\n3. Call mom");
    EXPECT_EQ(
        layout("Wash the car and then buy MILK and then call: mom"), "1. Wash the car\n2. Buy MILK\n3. Call: mom");
}

TEST(SequentialListFormatting, KeepsAFirstWithoutComma)
{
    EXPECT_EQ(layout("first wash the car, then buy milk, and then call mom"),
        "1. First wash the car\n2. Buy milk\n3. Call mom");
}

TEST(SequentialListFormatting, WantsTwoThens)
{
    expectProse("wash the car then buy milk");
    expectProse("First, wash the car, then buy milk");
    expectProse("");
}

TEST(SequentialListFormatting, WantsAndBeforeThenWithoutAFirst)
{
    expectProse("Wash the car then buy milk then call mom");
    expectProse("Wash the car and then buy milk then call mom");
}

TEST(SequentialListFormatting, RefusesThenThatIsATime)
{
    expectProse("Until then we wait and then we eat and then we sleep");
    for (const std::string word : { "back", "since", "until", "by", "before", "even" })
        expectProse("First we wait, " + word + " then we eat, then we sleep");
}

TEST(SequentialListFormatting, RefusesConditions)
{
    expectProse("If it rains we wait and then we eat and then we sleep");
    expectProse("We wait and then we eat and then we sleep unless it rains");
}

TEST(SequentialListFormatting, RefusesThenAtEitherEnd)
{
    expectProse("Then we wait and then we eat and then we sleep");
    expectProse("First we wait, then we eat, then");
}

TEST(SequentialListFormatting, RefusesStepsOfOneWord)
{
    expectProse("First wash then dry then fold");
    expectProse("First, wash, then dry it, then fold it");
}

TEST(SequentialListFormatting, RefusesQuotesAndLayout)
{
    for (const std::string sign : { "\n", "\"", "“", "‘", "`" })
        expectProse("We wait here " + sign + "and then we eat and then we sleep");
    EXPECT_EQ(
        layout("We wait here” and then we’ll eat and then we sleep"), "1. We wait here”\n2. We’ll eat\n3. We sleep");
}

TEST(SequentialListFormatting, LeavesALayoutOfTheModel)
{
    const std::string cleaned = "1. Wash the car\n2. Buy milk\n3. Call mom";
    EXPECT_EQ(restoringLayout(cleaned, "First, wash the car, then buy milk, then call mom"), cleaned);
}

TEST(SequentialListFormatting, TakesTheWordingOfTheModel)
{
    EXPECT_EQ(restoringLayout("First, wash my car, then buy oat milk, then call Mom.",
                  "first, um wash the car, then buy milk, then then call mom"),
        "First, wash my car, then buy oat milk, then call Mom."); // the original has one step more, an empty one
    EXPECT_EQ(restoringLayout("First, wash my car, then buy oat milk, then call Mom.",
                  "first, um wash the car, then buy milk, and then call mom"),
        "1. Wash my car\n2. Buy oat milk\n3. Call Mom");
}

TEST(SequentialListFormatting, DistrustsOtherSteps)
{
    const std::string original = "First, wash the car, then buy the milk, then call mom";
    for (const std::string cleaned : { "First, wash the car, then call mom, then buy milk.", // another order
             "First, wash the car, then go to the bank, then call mom.", // shares "the" only
             "First, wash the car, then buy milk, then call mom, then rest now.", "Wash the car, buy milk, call mom." })
        EXPECT_EQ(restoringLayout(cleaned, original), cleaned);
}

TEST(SequentialListFormatting, TakesNoWordThatSaysNothingForACommonOne)
{
    for (const std::string word : { "I", "we", "you", "the", "a", "an", "to", "and", "also", "have", "got", "gotta",
             "need", "for", "of", "um", "uh" }) {
        const std::string original = "First, we wash " + word + " cars, then buy milk, then call mom";
        const std::string cleaned = "First, clean " + word + " floors, then buy milk, then call mom";
        EXPECT_EQ(restoringLayout(cleaned, original), cleaned) << word;
    }
    EXPECT_EQ(restoringLayout("First, clean my floors, then buy milk, then call mom",
                  "First, we wash my cars, then buy milk, then call mom"),
        "1. Clean my floors\n2. Buy milk\n3. Call mom");
}

TEST(SequentialListFormatting, TrimsBlanksAndMarks)
{
    EXPECT_EQ(layout("First, ;\u00A0wash it: , then. dry it \t; then fold it.."), "1. Wash it\n2. Dry it\n3. Fold it");
}

TEST(SequentialListFormatting, TakesBrokenTextAsItComes)
{
    EXPECT_EQ(layout("\xff wash it and then dry \xe2\x82it and then fold it"),
        "1. \uFFFD wash it\n2. Dry \uFFFDit\n3. Fold it");
    expectProse(std::string("\0 then \0 and then \0", 20));
    expectProse("\U0001F600 and then \U0001F600 and then \U0001F600");
}

TEST(SequentialListFormatting, TakesTextThatIsSequenceThroughout)
{
    std::string text = "First, wash it";
    std::string expected = "1. Wash it";
    for (int step = 2; text.size() < 15'900; ++step) {
        text += " and then dry it";
        expected += "\n" + std::to_string(step) + ". Dry it";
    }
    EXPECT_EQ(layout(text), expected);
}

} // namespace
} // namespace Sorvane::SequentialListFormatting
