// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ScriptedTagger.h"

#include <Sorvane/DictationFormatting.h>

#include <gtest/gtest.h>

namespace Sorvane::DictationFormatting {
namespace {

using Items = std::vector<std::string>;

std::optional<Enumeration> found(std::string_view text)
{
    using enum LexicalClass;
    static const ScriptedTagger tagger(
        { { "buy", verb }, { "call", verb }, { "write", verb }, { "um", interjection }, { "oh", interjection } });
    return enumeration(text, tagger);
}

TEST(Enumeration, TakesTwoItemsWithExplicitNumbers)
{
    const Enumeration expected { "", { "Buy milk", "Call mom" } };
    EXPECT_EQ(found("Number one, buy milk. Number two, call mom."), expected);
    EXPECT_EQ(found("1. Buy milk 2. Call mom"), expected);
    EXPECT_EQ(found("1) buy milk, and 2: call mom"), expected);
    EXPECT_EQ(found("NUMBER ONE buy milk and number two call mom"), expected);
    EXPECT_EQ(found("number 1 buy milk number 2 call mom;"), expected);
}

TEST(Enumeration, TakesEachMarkBehindADigitAsExplicit)
{
    const Enumeration expected { "", { "Buy milk", "Call mom" } };
    for (const std::string mark : { ".", ")", ",", ":" }) {
        EXPECT_EQ(found("1" + mark + "buy milk 2" + mark + " call mom"), expected) << mark;
        EXPECT_EQ(found("one" + mark + " buy milk two" + mark + " call mom"), std::nullopt) << mark;
    }
    EXPECT_EQ(found("1; buy milk 2; call mom"), std::nullopt);
    EXPECT_EQ(found("1 buy milk 2 call mom"), std::nullopt);
    EXPECT_EQ(found("And\tnumber\n1 buy milk and  number  2 call mom"), expected);
}

TEST(Enumeration, TakesPlainNumbersOnlyWithACueAndThreeItems)
{
    EXPECT_EQ(found("One, buy milk. Two, call mom."), std::nullopt);
    EXPECT_EQ(found("Here is my list one buy milk two call mom"), std::nullopt);
    EXPECT_EQ(found("one buy milk two call mom three write the report"), std::nullopt);
    EXPECT_EQ(found("Here is my list one buy milk two call mom three write the report"),
        (Enumeration { "Here is my list", { "Buy milk", "Call mom", "Write the report" } }));
    EXPECT_EQ(found("I have one apple and two pears"), std::nullopt);
}

TEST(Enumeration, KnowsTheCues)
{
    for (const std::string intro : { "My list", "The following", "Steps", "Our tasks", "Some things",
             "At the store for", "I need to", "we plan to" })
        EXPECT_EQ(found(intro + ": one wash, two dry, three fold").value_or(Enumeration {}).intro, intro);
    EXPECT_EQ(found("I need to rest: one wash, two dry, three fold"), std::nullopt);
    EXPECT_EQ(found("A listing: one wash, two dry, three fold"), std::nullopt);
}

TEST(Enumeration, KnowsEachWordThatAnnouncesActions)
{
    for (const std::string word : { "need", "want", "plan", "have", "going", "like" }) {
        const std::string intro = "You " + word + " to";
        EXPECT_EQ(found(intro + " one wash two dry three fold").value_or(Enumeration {}).intro, intro);
        EXPECT_EQ(found(intro + "  buy it two call it three write it"),
            (Enumeration { intro, { "Buy it", "Call it", "Write it" } }));
    }
    EXPECT_EQ(found("You mean to one wash two dry three fold"), std::nullopt);
    EXPECT_EQ(found("You mean to buy it two call it three write it"), std::nullopt);
}

TEST(Enumeration, LooksForTheAnnouncementInTheFirstLine)
{
    EXPECT_EQ(found("Well,\nI need to buy it two call it three write it"), std::nullopt);
    EXPECT_TRUE(found("Well, I need to buy it two call it\nthree write it"));
}

TEST(Enumeration, TrimsBlanksAndMarks)
{
    EXPECT_EQ(found("\t. List,;:.\n number one milk \n\t.,;number two mom;, \t.\n"),
        (Enumeration { "List", { "Milk", "Mom" } }));
    EXPECT_EQ(found("!list: number one milk: number two mom!"), (Enumeration { "!list", { "Milk:", "Mom!" } }));
}

TEST(Enumeration, WantsAllNumbersExplicitOrACue)
{
    EXPECT_EQ(found("Number one buy milk two call mom"), std::nullopt);
    EXPECT_EQ(found("My tasks: number one buy milk two call mom 3. rest"),
        (Enumeration { "My tasks", { "Buy milk", "Call mom", "Rest" } }));
}

TEST(Enumeration, WantsNumbersWithoutGapOrRepetition)
{
    EXPECT_EQ(found("Step one wash step three dry"), std::nullopt);
    EXPECT_EQ(found("My list number one a number two b number one c"), std::nullopt);
    EXPECT_EQ(found("1. a 2. b 2. c"), std::nullopt);
}

TEST(Enumeration, IsNoneIfAnItemIsEmpty)
{
    EXPECT_EQ(found("my list one, two, three buy milk"), std::nullopt);
    EXPECT_EQ(found("number one number two buy milk"), std::nullopt);
}

TEST(Enumeration, LeavesStrayNumbersInTheIntro)
{
    EXPECT_EQ(
        found("three things one wash two dry three fold"), (Enumeration { "three things", { "Wash", "Dry", "Fold" } }));
}

TEST(Enumeration, DoesNotTakeNumbersInsideOthers)
{
    EXPECT_EQ(found("version 3.1. a and v1. b and 12. c"), std::nullopt);
    EXPECT_EQ(found("1. update to 2.2 now 2. rest"), (Enumeration { "", { "Update to 2.2 now", "Rest" } }));
    EXPECT_EQ(found("1. 5 apples"), std::nullopt); // no letter behind the number
    for (const std::string before : { "a", "_", "9", ".", "\u00E9" })
        EXPECT_EQ(found(before + "1. wash 2. dry"), std::nullopt) << before;
    for (const std::string before : { "(", "-", "\U0001F600", "\u201D" })
        EXPECT_EQ(found(before + "1. wash 2. dry").value_or(Enumeration {}).intro, before);
}

TEST(Enumeration, PassesOverALetterThatOnlyResemblesAnother)
{
    // A long s matches an "s" in either case, and yet this is no number.
    EXPECT_EQ(found("1. a 2. b 3. c 4. d 5. e \u017Fix. f")->items, (Items { "A", "B", "C", "D", "E \u017Fix. f" }));
}

TEST(Enumeration, ReachesTenAndNoFurther)
{
    const std::string ten = "list one a two b three c four d five e six f seven g eight h nine i ten j";
    ASSERT_TRUE(found(ten));
    EXPECT_EQ(found(ten)->items, (Items { "A", "B", "C", "D", "E", "F", "G", "H", "I", "J" }));
    EXPECT_EQ(found(ten + " eleven k")->items.back(), "J eleven k");
    EXPECT_EQ(found("1. a 2. b 3. c 4. d 5. e 6. f 7. g 8. h 9. i 10. j 11. k")->items.back(), "J 11. k");
}

TEST(Enumeration, ImpliesTheFirstItemOfActions)
{
    EXPECT_EQ(found("I need to buy milk, two call mom, three write the report"),
        (Enumeration { "I need to", { "Buy milk", "Call mom", "Write the report" } }));
    EXPECT_EQ(found("I'm going to um oh buy milk, two call mom, three write it")->items.front(), "Um oh buy milk");
}

TEST(Enumeration, ImpliesNothingForWhatIsNoAction)
{
    EXPECT_EQ(found("I need to buy milk, two call mom"), std::nullopt); // two items
    EXPECT_EQ(found("I need to buy milk, two green pears, three write the report"), std::nullopt);
    EXPECT_EQ(found("I need to rest well, two call mom, three write the report"), std::nullopt);
    EXPECT_EQ(found("I need to um oh, two call mom, three write the report"), std::nullopt); // interjections alone
    EXPECT_EQ(found("I need to buy, two call, three write"), std::nullopt); // one word is no action
    EXPECT_EQ(found("buy milk, two call mom, three write the report"), std::nullopt); // no "need to"
    EXPECT_EQ(found("two call mom, I need to buy milk, three write the report"), std::nullopt);
    EXPECT_EQ(found("I need to buy milk, three call mom, four write the report"), std::nullopt);
}

TEST(Enumeration, LeavesVerbatimTextAlone)
{
    EXPECT_TRUE(found("1. Buy milk 2. Call mom"));
    EXPECT_EQ(found("1. Buy `milk` 2. Call mom"), std::nullopt);
}

TEST(Enumeration, UpperCasesAWholeFirstCharacter)
{
    EXPECT_EQ(found("1. éclairs kaufen 2. über Äpfel reden")->items, (Items { "Éclairs kaufen", "Über Äpfel reden" }));
}

TEST(Enumeration, TakesBrokenTextAsItComes)
{
    EXPECT_EQ(found("\xff 1. Buy\xe2\x82 2. call")->items, (Items { "Buy\uFFFD", "Call" }));
    EXPECT_EQ(found(""), std::nullopt);
    EXPECT_EQ(found(std::string("1. a\0 2. b", 10))->items, (Items { std::string("A\0", 2), "B" }));
    EXPECT_EQ(found("1. \u202Eabc 2. b"), std::nullopt); // what turns the writing round is no letter
}

TEST(Enumeration, IsNotMisledByTextMadeToBeSlow)
{
    const auto repeated = [](const std::string& piece) {
        std::string text;
        while (text.size() + piece.size() <= 16'000)
            text += piece;
        return text;
    };
    for (const std::string piece :
        { "and ", "number ", "and number ", "one ", "1.", " ", "need to ", "need  ", "\U0001F600" })
        EXPECT_EQ(found(repeated(piece)), std::nullopt) << piece;
    EXPECT_TRUE(found(repeated("and number ") + "one a number two b"));
    EXPECT_TRUE(found("number one a number two b" + std::string(16'000, ' ')));
    EXPECT_TRUE(found("number one" + std::string(16'000, ' ') + "a number two b"));
}

} // namespace
} // namespace Sorvane::DictationFormatting
