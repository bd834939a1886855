// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Regex/Pattern.h>

#include <gtest/gtest.h>

namespace Regex {
namespace {

constexpr std::string_view text = "a\U0001F600ä b"; // 1, 4, 2, 1 and 1 bytes; 1, 2, 1, 1 and 1 units

TEST(UTF16Match, CountsUnitsWhereAMatchCountsBytes)
{
    const Pattern last("b");
    EXPECT_EQ(last.firstMatch(text)->range(), (ByteRange { 8, 9 }));
    EXPECT_EQ(last.firstUTF16Match(text)->range(), (UTF16Range { 5, 6 }));
    EXPECT_EQ(last.firstUTF16Match(text)->substring(), "b");
    EXPECT_EQ(last.firstUTF16Match("a"), std::nullopt);
}

TEST(UTF16Match, NeverCutsACharacter)
{
    const auto all = Pattern(".").matches(text);
    ASSERT_EQ(all.size(), 5);
    EXPECT_EQ(all[1].range(), (ByteRange { 1, 5 }));
    EXPECT_EQ(all[1].substring(), "\U0001F600");
    EXPECT_EQ(all[1].utf16Offsets(text).range(), (UTF16Range { 1, 3 }));
}

TEST(UTF16Match, IsTheSameFoundOrConverted)
{
    const Pattern groups("(x)?(ä)( )");
    const auto converted = groups.firstMatch(text)->utf16Offsets(text);
    ASSERT_EQ(converted.captures.size(), 4);
    EXPECT_EQ(converted.captures[1].range, std::nullopt);
    EXPECT_EQ(converted.captures[2].range, (UTF16Range { 3, 4 }));
    EXPECT_EQ(converted, groups.utf16Matches(text).at(0));
}

TEST(UTF16Match, ListsAllMatches)
{
    const auto all = Pattern("[ab]").utf16Matches(text);
    ASSERT_EQ(all.size(), 2);
    EXPECT_EQ(all[0].range(), (UTF16Range { 0, 1 }));
    EXPECT_EQ(all[1].range(), (UTF16Range { 5, 6 }));
}

TEST(UTF16Match, SeesReplacementCharactersWhereTheTextIsNoUTF8)
{
    constexpr std::string_view broken = "a\xff\xe2\x82z";
    const auto match = Pattern("\uFFFD+").firstMatch(broken);
    EXPECT_EQ(match->range(), (ByteRange { 1, 4 }));
    EXPECT_EQ(match->substring(), "\xff\xe2\x82");
    EXPECT_EQ(match->utf16Offsets(broken).range(), (UTF16Range { 1, 3 }));
}

} // namespace
} // namespace Regex
