// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/XetPointer.h>

#include <gtest/gtest.h>

using namespace ModelStore;

namespace {

const std::string hash = std::string(32, 'a') + std::string(32, 'F');
const std::string address = "https://hub.example/owner/name/resolve/v1/weights/a.bin";
const std::string derived = "https://hub.example/api/models/owner/name/xet-read-token/v1";

std::string refreshURL(const std::optional<std::string>& link, const std::string& resolveURL = address)
{
    const auto pointer = XetPointer::from(hash, link, resolveURL);
    return pointer ? pointer->refreshURL : "none";
}

} // namespace

TEST(XetPointer, NeedsAHash)
{
    EXPECT_EQ(XetPointer::from(hash, {}, address), (XetPointer { .fileID = hash, .refreshURL = derived }));
    EXPECT_EQ(XetPointer::from(std::nullopt, {}, address), std::nullopt);
    EXPECT_EQ(XetPointer::from(hash.substr(1), {}, address), std::nullopt);
    EXPECT_EQ(XetPointer::from(hash + "a", {}, address), std::nullopt);
    EXPECT_EQ(XetPointer::from("g" + hash.substr(1), {}, address), std::nullopt);
}

TEST(XetPointer, TakesTheAddressOfTheLink)
{
    EXPECT_EQ(refreshURL("<https://a/token>; rel=xet-auth"), "https://a/token");
    EXPECT_EQ(refreshURL("<https://a/token> ; REL = \"Xet-Auth\""), "https://a/token");
    EXPECT_EQ(refreshURL("<https://a/1,2>; rel=next, <https://a/3,4>; rel=\"xet-auth\""), "https://a/3,4");
    EXPECT_EQ(refreshURL("<https://a/1>; rel=xet-auth, <https://a/2>; rel=xet-auth"), "https://a/1");
}

TEST(XetPointer, DerivesTheAddressWhereTheLinkHasNone)
{
    for (const char* link : { "", "<http://a/token>; rel=xet-auth", "https://a/token; rel=xet-auth", "<https://a/token",
             ">https://a<; rel=xet-auth", "<https://a/token>; rel=next", "<HTTPS://a>; rel=xet-auth", ",,,",
             "<>;rel=xet-auth" })
        EXPECT_EQ(refreshURL(link), derived) << link;
}

TEST(XetPointer, DerivesNothingFromAnotherKindOfAddress)
{
    for (const char* other : { "", "https://hub.example/owner/name/resolve", "https://hub.example/owner/name/resolve/",
             "https://hub.example/owner/name", "https://hub.example/name/resolve/v1", "resolve/resolve/resolve" })
        EXPECT_EQ(refreshURL({}, other), "none") << other;
    EXPECT_EQ(refreshURL({}, "https://hub.example/mirror/owner/name/resolve/v1"),
        "https://hub.example/mirror/api/models/owner/name/xet-read-token/v1");
}
