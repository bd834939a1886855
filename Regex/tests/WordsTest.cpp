// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Regex/Words.h>

#include <gmock/gmock.h>

namespace Regex {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string_view> textsOf(std::string_view text, const std::optional<std::string>& locale = std::nullopt)
{
    std::vector<std::string_view> texts;
    for (const auto& word : words(text, locale))
        texts.push_back(word.text);
    return texts;
}

TEST(Words, AreCutWithoutBlanksAndPunctuation)
{
    EXPECT_THAT(textsOf("Don't wait: 3.5 km, e-mail!"), ElementsAre("Don't", "wait", "3.5", "km", "e", "mail"));
    EXPECT_THAT(textsOf("Don't wait", "en"), ElementsAre("Don't", "wait"));
}

TEST(Words, AreNoSymbols)
{
    EXPECT_THAT(textsOf(""), IsEmpty());
    EXPECT_THAT(textsOf(" … \U0001F600 + \xff"), IsEmpty());
}

TEST(Words, AreFoundInLanguagesThatWriteNoBlanks)
{
    EXPECT_THAT(textsOf("私は猫です"), ElementsAre("私", "は", "猫", "です"));
    EXPECT_THAT(textsOf("カタカナ"), ElementsAre("カタカナ"));
}

TEST(Words, SayWhereTheyStand)
{
    const auto found = words("\U0001F600 né!");
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found[0].range, (ByteRange { 5, 8 }));
    EXPECT_EQ(found[0].text, "né");
}

} // namespace
} // namespace Regex
