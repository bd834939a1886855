// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Environment.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace PlatformSupport {

TEST(EnvironmentVariable, IsTheTextThatIsSet)
{
    ::setenv("SORVANE_TEST_VARIABLE", "some text", 1);
    EXPECT_EQ(environmentVariable("SORVANE_TEST_VARIABLE"), "some text");
    ::unsetenv("SORVANE_TEST_VARIABLE");
}

TEST(EnvironmentVariable, IsPresentWhenSetToNothing)
{
    ::setenv("SORVANE_TEST_VARIABLE", "", 1);
    EXPECT_EQ(environmentVariable("SORVANE_TEST_VARIABLE"), "");
    ::unsetenv("SORVANE_TEST_VARIABLE");
}

TEST(EnvironmentVariable, IsAbsentWhenNotSet)
{
    ::unsetenv("SORVANE_TEST_VARIABLE");
    EXPECT_EQ(environmentVariable("SORVANE_TEST_VARIABLE"), std::nullopt);
}

} // namespace PlatformSupport
