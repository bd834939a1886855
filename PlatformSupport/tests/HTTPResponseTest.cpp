// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/HTTPResponse.h>

#include <gtest/gtest.h>

namespace PlatformSupport {

TEST(HTTPResponse, FindsTheFirstHeaderOfANameInAnyCase)
{
    const HTTPResponse response {
        .status = 200, .headers = { { "Content-Type", "text/plain" }, { "CONTENT-TYPE", "other" } }, .body = {}
    };
    EXPECT_EQ(response.header("content-type"), "text/plain");
    EXPECT_EQ(response.header("Content-Length"), std::nullopt);
}

TEST(HTTPResponse, ReadsItsBodyAsTextWhateverItIs)
{
    EXPECT_EQ((HTTPResponse { .status = 200, .headers = {}, .body = "a\xFFz" }.text()), "a\uFFFDz");
    EXPECT_EQ(HTTPResponse().text(), "");
}

TEST(HTTPResponse, CountsTheTwoHundredsAsSuccess)
{
    const auto isSuccess
        = [](int64_t status) { return HTTPResponse { .status = status, .headers = {}, .body = {} }.isSuccess(); };
    EXPECT_TRUE(isSuccess(200));
    EXPECT_TRUE(isSuccess(299));
    EXPECT_FALSE(isSuccess(199));
    EXPECT_FALSE(isSuccess(300));
}

} // namespace PlatformSupport
