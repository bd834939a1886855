// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/SelectionTarget.h"

#include <DesktopServices/Pasteboard.h>

#include <gtest/gtest.h>

namespace DesktopLinux {

namespace {

SelectionTarget target(std::string name, std::string type, std::uint8_t format)
{
    return { std::move(name), std::move(type), format, nullptr };
}

TEST(SelectionTarget, HasATypeThatTellsAllOfIt)
{
    EXPECT_EQ(pasteboardType(target("UTF8_STRING", "UTF8_STRING", 8)), DesktopServices::pasteboardStringType);
    EXPECT_EQ(pasteboardType(target("image/png", "image/png", 8)), "image/png");
    EXPECT_EQ(pasteboardType(target("TEXT", "UTF8_STRING", 8)), "TEXT as UTF8_STRING/8");
    EXPECT_EQ(pasteboardType(target("LENGTH", "INTEGER", 32)), "LENGTH as INTEGER/32");
    EXPECT_EQ(pasteboardType(target("X", "X", 16)), "X as X/16");
    EXPECT_EQ(pasteboardType(target("UTF8_STRING", "STRING", 8)), "UTF8_STRING as STRING/8");
    EXPECT_EQ(pasteboardType(target("text", "saved as %text", 8)), "text as saved%20as%20%25text/8");
}

TEST(SelectionTarget, IsFoundAgainByItsType)
{
    for (const auto& original : { target("UTF8_STRING", "UTF8_STRING", 8), target("image/png", "image/png", 8),
             target("TEXT", "UTF8_STRING", 8), target("LENGTH", "INTEGER", 32), target("X", "X", 16),
             target("saved as text", "a/b/32", 8), target("x/32", "x/32", 8), target("text", "saved as text", 8),
             target("a as b", "c as d/8", 16), target(" as ", " as ", 8), target("100% as%20is", "50%25 as is", 8),
             target("a as a", "a as a", 8), target("a%20b", "a%20b", 8),
             target("public.utf8-plain-text", "public.utf8-plain-text", 8) }) {
        const auto found = targetOfPasteboardType(pasteboardType(original));
        ASSERT_TRUE(found);
        EXPECT_EQ(found->name, original.name);
        EXPECT_EQ(found->type, original.type);
        EXPECT_EQ(found->format, original.format);
    }
}

TEST(SelectionTarget, IsNotMadeOfNothing)
{
    EXPECT_FALSE(targetOfPasteboardType(""));
    EXPECT_FALSE(targetOfPasteboardType(" as "));
    EXPECT_FALSE(targetOfPasteboardType("A as "));
    EXPECT_FALSE(targetOfPasteboardType("A as /32"));
}

TEST(SelectionTarget, OffersTextAsLatin1OnlyIfItIs)
{
    const auto offersString = [](std::string_view text) {
        for (const auto& offered : targetsOfText(text))
            if (offered.name == "STRING")
                return true;
        return false;
    };
    EXPECT_TRUE(offersString("abc"));
    EXPECT_TRUE(offersString(""));
    EXPECT_FALSE(offersString("Grüße"));
}

} // namespace

} // namespace DesktopLinux
