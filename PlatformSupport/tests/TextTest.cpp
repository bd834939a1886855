// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/MessageError.h>
#include <PlatformSupport/Text.h>

#include <gtest/gtest.h>

namespace PlatformSupport {

TEST(AsciiCaseEqual, IgnoresTheCaseOfTheLettersAToZ)
{
    EXPECT_TRUE(asciiCaseEqual("Content-Type", "content-tYPE"));
    EXPECT_TRUE(asciiCaseEqual("AZaz09", "azAZ09"));
    EXPECT_TRUE(asciiCaseEqual("", ""));
}

TEST(AsciiCaseEqual, ComparesAllOtherBytesAsTheyAre)
{
    EXPECT_FALSE(asciiCaseEqual("Straße", "STRASSE"));
    EXPECT_FALSE(asciiCaseEqual("Ä", "ä"));
    EXPECT_TRUE(asciiCaseEqual("naïve", "NAïVE"));
    EXPECT_FALSE(asciiCaseEqual("@[`{", "`{@["));
    EXPECT_FALSE(asciiCaseEqual("a", "ab"));
    EXPECT_FALSE(asciiCaseEqual("a", ""));
}

TEST(MessageError, IsDescribedByItsMessage)
{
    class NoPaper : public MessageError {
        std::string message() const override { return "no paper left"; }
    };
    try {
        throw NoPaper();
    } catch (const MessageError& error) {
        EXPECT_EQ(error.description(), "no paper left");
    }
}

} // namespace PlatformSupport
