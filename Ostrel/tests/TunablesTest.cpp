// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Ostrel/Tunables.h>

#include <gtest/gtest.h>

using Ostrel::Tunables;

TEST(Tunables, HaveDefaults)
{
    EXPECT_EQ(Tunables::parsed(nullptr, nullptr).boundarySearch, 3.0);
    EXPECT_EQ(Tunables::parsed(nullptr, nullptr).batchWindows, 64);
}

TEST(Tunables, ReadAWholeNumber)
{
    EXPECT_EQ(Tunables::parsed("0", "8").boundarySearch, 0);
    EXPECT_EQ(Tunables::parsed("+1.5e0", "+8").boundarySearch, 1.5);
    EXPECT_EQ(Tunables::parsed("-2.25", "+8").boundarySearch, -2.25);
    EXPECT_EQ(Tunables::parsed("", "+8").batchWindows, 8);
    EXPECT_EQ(Tunables::parsed("", "-3").batchWindows, -3);
    EXPECT_EQ(Tunables::parsed("", "007").batchWindows, 7);
}

TEST(Tunables, TakeAnythingElseAsAbsent)
{
    for (const char* text : { "", "abc", " 2", "2 ", "2s", "+-2", "++2", "--2", "+" }) {
        EXPECT_EQ(Tunables::parsed(text, nullptr).boundarySearch, 3.0) << text;
        EXPECT_EQ(Tunables::parsed(nullptr, text).batchWindows, 64) << text;
    }
    EXPECT_EQ(Tunables::parsed(nullptr, "1.5").batchWindows, 64);
    EXPECT_EQ(Tunables::parsed(nullptr, "99999999999999999999").batchWindows, 64);
}
