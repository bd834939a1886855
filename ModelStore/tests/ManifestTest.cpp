// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TestFiles.h"

#include <ModelStore/Manifest.h>

#include <gtest/gtest.h>

using namespace ModelStore;

namespace {

std::optional<Manifest> parsed(std::string_view text)
{
    return Manifest::parse(bytesOf(text));
}

} // namespace

TEST(Manifest, IsStoredAsLines)
{
    const Manifest manifest { .requested = { "config.json", "weights/" },
        .entries = { { "config.json", 412, "aa" }, { "weights/a.bin", 7340032, "bb" } } };
    EXPECT_EQ(manifest.serialized(),
        bytesOf("TRW1\nR\tconfig.json\nR\tweights/\nF\tconfig.json\t412\taa\nF\tweights/a.bin\t7340032\tbb"));
    EXPECT_EQ(Manifest::parse(manifest.serialized()), manifest);
    EXPECT_EQ(Manifest {}.serialized(), bytesOf("TRW1"));
}

TEST(Manifest, ReadsBlankLinesAndAnyOrder)
{
    EXPECT_EQ(parsed("TRW1"), Manifest {});
    EXPECT_EQ(
        parsed("TRW1\n\nF\ta\t-1\tx\n\nR\ta\n"), (Manifest { .requested = { "a" }, .entries = { { "a", -1, "x" } } }));
    EXPECT_EQ(parsed("TRW1\nF\ta\t+5\t"), (Manifest { .requested = {}, .entries = { { "a", 5, "" } } }));
}

TEST(Manifest, RefusesAnythingElse)
{
    for (const char* text : { "", "TRW2", "trw1", " TRW1", "TRW1 ", "TRW1\r\nR\ta", "\nTRW1", "TRW1\nR\tx\ty",
             "TRW1\nR", "TRW1\nX\ta", "TRW1\nF\ta\t1", "TRW1\nF\ta\t1\tx\ty", "TRW1\nF\ta\t\tx", "TRW1\nF\ta\t1.5\tx",
             "TRW1\nF\ta\t 1\tx", "TRW1\nF\ta\t9223372036854775808\tx", "TRW1\n \n" })
        EXPECT_FALSE(parsed(text).has_value()) << text;
}

TEST(Manifest, ReplacesWhatIsNoText)
{
    EXPECT_EQ(parsed("TRW1\nR\ta\xFF"
                     "b")
                  ->requested.front(),
        "a\uFFFD"
        "b");
}
