// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WebHost.h"

#include <gtest/gtest.h>

namespace Sorvane {
namespace {

TEST(SecureWebHost, IsTheHostInLowerCase)
{
    EXPECT_EQ(secureWebHost("https://mail.google.com/mail/u/0/#inbox"), "mail.google.com");
    EXPECT_EQ(secureWebHost("HTTPS://Mail.Google.COM"), "mail.google.com");
    EXPECT_EQ(secureWebHost("https://mail.google.com?a:b"), "mail.google.com");
}

TEST(SecureWebHost, AllowsTheOrdinaryPortOnly)
{
    EXPECT_EQ(secureWebHost("https://mail.google.com:443/"), "mail.google.com");
    EXPECT_EQ(secureWebHost("https://mail.google.com:/"), "mail.google.com");
    EXPECT_EQ(secureWebHost("https://mail.google.com:8443/"), std::nullopt);
    EXPECT_EQ(secureWebHost("https://mail.google.com:443:1/"), std::nullopt);
}

TEST(SecureWebHost, NeedsASecureScheme)
{
    for (const auto* location : { "http://mail.google.com/", "httpss://mail.google.com/", "https:/mail.google.com/",
             "mail.google.com", "about:blank", "" })
        EXPECT_EQ(secureWebHost(location), std::nullopt) << location;
}

TEST(SecureWebHost, IsNotFooledByWhatStandsAroundTheHost)
{
    EXPECT_EQ(secureWebHost("https://mail.google.com@example.org/"), "example.org");
    EXPECT_EQ(secureWebHost("https://example.org/https://mail.google.com/"), "example.org");
    EXPECT_EQ(secureWebHost("https://example.org#@mail.google.com/"), "example.org");
    EXPECT_EQ(secureWebHost("https://example.org\\@mail.google.com/"), std::nullopt);
    EXPECT_EQ(secureWebHost("https://mail.google.com\\.example.org/"), std::nullopt);
    EXPECT_EQ(secureWebHost("https:///mail.google.com/"), std::nullopt);
    EXPECT_EQ(secureWebHost("https://"), std::nullopt);
    EXPECT_EQ(secureWebHost("https://mail%2Egoogle.com/"), std::nullopt);
}

} // namespace
} // namespace Sorvane
