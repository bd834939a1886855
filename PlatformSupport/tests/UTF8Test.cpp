// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/UTF8.h>

#include <gtest/gtest.h>

#include <string_view>

namespace PlatformSupport {

using namespace std::string_view_literals;

TEST(UTF8, TakesWellFormedTextOfEveryLength)
{
    for (const auto text : { ""sv, "a\0b"sv, "\u0080\u07FF"sv, "\u0800\uD7FF\uE000\uFFFF"sv, "\U00010000\U0010FFFF"sv })
        EXPECT_TRUE(isUTF8(text)) << text;
}

TEST(UTF8, RefusesEverythingElse)
{
    const auto wrong = { "\x80"sv, "\xC0\x80"sv, "\xC1\xBF"sv, "\xE0\x9F\xBF"sv, "\xED\xA0\x80"sv, "\xF0\x8F\xBF\xBF"sv,
        "\xF4\x90\x80\x80"sv, "\xF5\x80\x80\x80"sv, "\xFF"sv, "ab\xE2\x82"sv, "\xE2("sv };
    for (const auto text : wrong)
        EXPECT_FALSE(isUTF8(text)) << text;
}

TEST(UTF8, RepairsWhatIsBroken)
{
    EXPECT_EQ(repairedUTF8("fine \u20AC"), "fine \u20AC");
    EXPECT_EQ(repairedUTF8("a\xFF"
                           "b"),
        "a\uFFFD"
        "b");
    EXPECT_EQ(repairedUTF8("\xE2\x82"), "\uFFFD\uFFFD");
}

} // namespace PlatformSupport
