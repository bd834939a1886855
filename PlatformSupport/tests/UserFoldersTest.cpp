// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/UserFolders.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace PlatformSupport {

TEST(UserFolders, AreThoseThatTheEnvironmentNames)
{
    ::setenv("HOME", "/home/user", 1);
    ::setenv("XDG_DATA_HOME", "/data", 1);
    ::setenv("XDG_CACHE_HOME", "/caches", 1);
    ::setenv("XDG_CONFIG_HOME", "/configuration", 1);
    ::setenv("TMPDIR", "/scratch", 1);
    const auto folders = UserFolders::fromEnvironment();
    EXPECT_EQ(folders.home, "/home/user");
    EXPECT_EQ(folders.applicationSupport, "/data");
    EXPECT_EQ(folders.caches, "/caches");
    EXPECT_EQ(folders.configuration, "/configuration");
    EXPECT_EQ(folders.temporary, "/scratch");
}

TEST(UserFolders, LieAtHomeWhereNothingAbsoluteIsNamed)
{
    ::setenv("HOME", "/home/user", 1);
    ::unsetenv("XDG_DATA_HOME");
    ::setenv("XDG_CACHE_HOME", "relative", 1);
    ::setenv("XDG_CONFIG_HOME", "", 1);
    ::unsetenv("TMPDIR");
    const auto folders = UserFolders::fromEnvironment();
    EXPECT_EQ(folders.applicationSupport, "/home/user/.local/share");
    EXPECT_EQ(folders.caches, "/home/user/.cache");
    EXPECT_EQ(folders.configuration, "/home/user/.config");
    EXPECT_EQ(folders.temporary, "/tmp");
}

TEST(UserFolders, FindAHomeWithoutAVariable)
{
    ::unsetenv("HOME");
    EXPECT_TRUE(UserFolders::fromEnvironment().home.is_absolute());
}

} // namespace PlatformSupport
