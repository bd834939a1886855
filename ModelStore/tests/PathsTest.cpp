// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/Paths.h>

#include <gtest/gtest.h>

using ModelStore::isSafeRelativePath;
using ModelStore::join;

TEST(Join, PutsOneSlashBetweenParts)
{
    EXPECT_EQ(join({ "a/", "", "b" }), "a/b");
    EXPECT_EQ(join({ "/root", "a/b", "c" }), "/root/a/b/c");
    EXPECT_EQ(join({ "", "a" }), "a");
    EXPECT_EQ(join({ "a", "/b" }), "a//b");
    EXPECT_EQ(join({}), "");
}

TEST(IsSafeRelativePath, AcceptsWhatStaysBelow)
{
    for (const char* path : { "a", "a/b/", "owner/name", "a b", "..a", "a..", "...", "a\\..\\b", "\u00e9" })
        EXPECT_TRUE(isSafeRelativePath(path)) << path;
}

TEST(IsSafeRelativePath, RefusesWhatDoesNot)
{
    for (const char* path :
        { "", "/", "//", "a//b", "./a", "a/../b", "/a", "a/b//", ".", "..", "../", "a/.", "a\tb", "a\nb", "a\rb" })
        EXPECT_FALSE(isSafeRelativePath(path)) << path;
}
