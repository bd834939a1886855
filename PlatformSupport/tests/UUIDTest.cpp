// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/UUID.h>

#include <gtest/gtest.h>

#include <unordered_set>

namespace PlatformSupport {
namespace {

constexpr auto example = "E621E1F8-C36C-495A-93FC-0C247A3E6E5F";

TEST(UUID, IsWrittenInCapitals)
{
    EXPECT_EQ(UUID::parse("e621e1f8-c36c-495a-93fc-0c247a3e6e5f")->text(), example);
    EXPECT_EQ(UUID().text(), "00000000-0000-0000-0000-000000000000");
}

TEST(UUID, ReadsNothingButItsWrittenForm)
{
    EXPECT_EQ(UUID::parse(example)->text(), example);
    EXPECT_FALSE(UUID::parse(""));
    EXPECT_FALSE(UUID::parse("E621E1F8C36C495A93FC0C247A3E6E5F"));
    EXPECT_FALSE(UUID::parse("{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}"));
    EXPECT_FALSE(UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5"));
    EXPECT_FALSE(UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E5G"));
    EXPECT_FALSE(UUID::parse("E621E1F8-C36C-495A-93FC-0C247A3E6E-F"));
    EXPECT_FALSE(UUID::parse("E621E1F-8C36C-495A-93FC-0C247A3E6E5F"));
    EXPECT_FALSE(UUID::parse("+621E1F8-C36C-495A-93FC-0C247A3E6E5F"));
}

TEST(UUID, IsOrderedAsItsText)
{
    const auto low = *UUID::parse("0000000F-0000-0000-0000-000000000000");
    const auto high = *UUID::parse("F0000000-0000-0000-0000-000000000000");
    EXPECT_LT(low, high);
    EXPECT_LT(low.text(), high.text());
}

TEST(RandomUUIDs, AreNeverTheSame)
{
    RandomUUIDs source;
    std::unordered_set<UUID> seen;
    for (int i = 0; i < 1000; ++i)
        seen.insert(source.next());
    EXPECT_EQ(seen.size(), 1000U);
}

TEST(RandomUUIDs, SayThatTheyAreRandom)
{
    RandomUUIDs source;
    EXPECT_EQ(source.next().text()[14], '4');
}

} // namespace
} // namespace PlatformSupport
