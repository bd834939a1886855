// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/DictationFormatting.h>
#include <Sorvane/LinkGrammarTagger.h>

#include <gmock/gmock.h>

#include <clocale>
#include <string>
#include <thread>

namespace Sorvane {
namespace {

using enum LexicalClass;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

// Loading the dictionary takes time: one for all tests.
const LinkGrammarTagger& tagger()
{
    static const LinkGrammarTagger shared;
    return shared;
}

LexicalClass classBehindPlease(const std::string& item)
{
    return tagger().classesOfWords("Please " + item).at(1);
}

TEST(LinkGrammarTagger, TellsVerbsOfRequests)
{
    for (const std::string item :
        { "buy milk", "call mom", "wash the car", "write the report", "pick up the kids", "be nice",
            "email John about the contract", "google the answer", "pay rent", "order pizza", "refactor the codebase",
            "frobnicate the widget", "don't forget the keys", "make sure that the door of the house is closed at night",
            "find out why the build is failing on main", "send the invoice to the client by Friday" })
        EXPECT_EQ(classBehindPlease(item), verb) << item;
}

TEST(LinkGrammarTagger, TellsWhatIsNoVerb)
{
    for (const std::string item : { "the report", "three eggs", "red apples", "apples and pears", "birthday cake",
             "coffee beans", "my mother's birthday", "John and Mary", "eggs for breakfast", "a new car" })
        EXPECT_EQ(classBehindPlease(item), other) << item;
}

TEST(LinkGrammarTagger, TellsInterjectionsAndTheVerbBehindThem)
{
    EXPECT_THAT(tagger().classesOfWords("Please um, oh wash cars!"),
        ElementsAre(::testing::_, interjection, interjection, verb, other));
    EXPECT_EQ(tagger().classesOfWords("Please hey call the dentist").at(2), verb);
}

TEST(LinkGrammarTagger, TellsTheVerbBehindManyInterjections)
{
    std::string hesitation;
    for (int i = 0; i < 1'000; ++i)
        hesitation += "um, ";
    const auto classes = tagger().classesOfWords("Please " + hesitation + "call the dentist");
    ASSERT_THAT(classes, SizeIs(1'004));
    EXPECT_EQ(classes[1'000], interjection);
    EXPECT_EQ(classes[1'001], verb);
}

TEST(LinkGrammarTagger, LooksAtTheFirstWordsOnly)
{
    EXPECT_THAT(tagger().classesOfWords("one two three four five six seven eight nine"), SizeIs(6));
    EXPECT_THAT(tagger().classesOfWords("um one two uh three four five six oh seven eight"), SizeIs(9));
    EXPECT_THAT(tagger().classesOfWords(""), IsEmpty());
    EXPECT_THAT(tagger().classesOfWords(" … !"), IsEmpty());
    EXPECT_THAT(tagger().classesOfWords("um, uh"), ElementsAre(interjection, interjection));
}

TEST(LinkGrammarTagger, TakesAnyText)
{
    EXPECT_THAT(tagger().classesOfWords("\xff\xfe a\xe2\x82"), Each(other));
    EXPECT_THAT(tagger().classesOfWords("Please " + std::string(16'000, 'x')), SizeIs(2));
    EXPECT_THAT(tagger().classesOfWords(std::string("Please\0buy milk", 15)), SizeIs(3));
    EXPECT_THAT(tagger().classesOfWords("請 給 我 牛奶"), SizeIs(4));
}

TEST(LinkGrammarTagger, LeavesTheProgramsLocaleAlone)
{
    const std::string former = std::setlocale(LC_ALL, nullptr);
    EXPECT_EQ(LinkGrammarTagger().classesOfWords("Please buy milk").at(1), verb);
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), former);
}

TEST(LinkGrammarTagger, ServesSeveralThreads)
{
    std::vector<LexicalClass> classes(8, other);
    {
        std::vector<std::jthread> threads;
        for (auto& found : classes)
            threads.emplace_back([&found] {
                for (int i = 0; i < 10; ++i)
                    found = classBehindPlease("buy milk");
            });
    }
    EXPECT_THAT(classes, Each(verb));
}

TEST(LinkGrammarTagger, ServesTheListsThatImplyTheirFirstItem)
{
    const auto list
        = DictationFormatting::enumeration("I need to buy milk, two call mom, three write the report", tagger());
    ASSERT_TRUE(list);
    EXPECT_EQ(list->render(list->items), "I need to:\n1. Buy milk\n2. Call mom\n3. Write the report");
    EXPECT_FALSE(
        DictationFormatting::enumeration("I want to see the zoo, two red apples, three green pears", tagger()));
}

} // namespace
} // namespace Sorvane
