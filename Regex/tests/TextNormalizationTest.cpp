// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Regex/TextNormalization.h>

#include <gtest/gtest.h>

namespace Regex {
namespace {

TEST(TextNormalization, ComposesAndResolvesCompatibilityForms)
{
    EXPECT_EQ(nfkc(""), "");
    EXPECT_EQ(nfkc("ﬁne"), "fine");
    EXPECT_EQ(nfkc("e\u0301"), "é");
    EXPECT_EQ(nfkc("x²"), "x2");
    EXPECT_EQ(nfkc("Ａ"), "A");
    EXPECT_EQ(nfkc("\xff"), "\uFFFD");
}

} // namespace
} // namespace Regex
