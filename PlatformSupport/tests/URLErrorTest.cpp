// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/HTTPClient.h>
#include <PlatformSupport/URLError.h>
#include <PlatformSupport/URLSession.h>

#include <gtest/gtest.h>

#include <set>

namespace PlatformSupport {

TEST(URLError, SaysSomethingElseInEachCase)
{
    std::set<std::string> texts;
    constexpr int last = static_cast<int>(URLError::Code::cancelled);
    for (int code = 0; code <= last; ++code)
        texts.insert(URLError(static_cast<URLError::Code>(code)).description());
    EXPECT_EQ(texts.size(), last + 1);
}

TEST(URLError, AddsWhatTheSystemSays)
{
    const URLError error = URLError::cannotWriteToFile("No space left on device");
    EXPECT_EQ(error.code(), URLError::Code::cannotWriteToFile);
    EXPECT_EQ(error.description(), "The download could not be saved: No space left on device.");
    EXPECT_STREQ(error.what(), error.description().c_str());
}

TEST(HTTPClientError, IsAMessage)
{
    EXPECT_EQ(HTTPClientError::requestFailed("why").description(), "why");
    EXPECT_EQ(HTTPClientError::invalidURL().which(), HTTPClientError::Case::invalidURL);
    EXPECT_EQ(HTTPClientError::unsupportedPlatform(), HTTPClientError::unsupportedPlatform());
}

TEST(URL, IsReadOrNot)
{
    for (const char* good :
        { "https://example.org/a/b?c=d", "http://127.0.0.1:8080", "ftp://example.org/", "http://[::1]/" })
        EXPECT_TRUE(isURL(good)) << good;
    for (const char* bad :
        { "", "example.org", "https://", "https://exa mple.org/", "https://example.org:port/", "/a/b" })
        EXPECT_FALSE(isURL(bad)) << bad;
}

} // namespace PlatformSupport
