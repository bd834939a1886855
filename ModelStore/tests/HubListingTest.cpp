// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "HubListing.h"

#include <ModelStore/DecodingError.h>
#include <ModelStore/HubEndpoint.h>

#include <gmock/gmock.h>

#include <cstdlib>

using namespace ModelStore;
using testing::ElementsAre;

namespace {

template <typename Decode> std::string failure(Decode decode, const std::string& json)
{
    try {
        decode(json);
    } catch (const DecodingError& error) {
        return error.description();
    }
    return "none";
}

std::string treeFailure(const std::string& json)
{
    return failure(decodeTree, json);
}

std::string refsFailure(const std::string& json)
{
    return failure(decodeTags, json);
}

std::string unreadable(const std::string& reason)
{
    return "The hub’s answer could not be read: " + reason + ".";
}

} // namespace

TEST(HubListing, GivesTheFilesOfATree)
{
    const auto entries = decodeTree(R"([
        { "type": "directory", "oid": "1", "size": 0, "path": "weights" },
        { "type": "file", "oid": "2", "size": 12, "path": "weights/a.bin", "lfs": { "oid": "abc", "size": 99, "pointerSize": 1 },
          "xetHash": "unknown" },
        { "type": "file", "oid": "3", "size": -2, "path": "meta.json", "lfs": null },
        { "type": "File", "size": 0, "path": "elsewhere" } ])");
    EXPECT_THAT(entries,
        ElementsAre(RemoteEntry { "weights/a.bin", 12, "abc" }, RemoteEntry { "meta.json", -2, std::nullopt }));
    EXPECT_TRUE(decodeTree("[]").empty());
}

TEST(HubListing, TakesNoTreeThatLacksAnything)
{
    EXPECT_EQ(treeFailure(R"([{ "type": "directory", "path": "a" }])"), unreadable("\"size\" is missing"));
    EXPECT_EQ(treeFailure(R"([{ "path": "a", "size": 1 }])"), unreadable("\"type\" is missing"));
    EXPECT_EQ(treeFailure(R"([{ "type": "file", "size": 1 }])"), unreadable("\"path\" is missing"));
    EXPECT_EQ(
        treeFailure(R"([{ "type": "file", "path": "a", "size": 1, "lfs": {} }])"), unreadable("\"oid\" is missing"));
    EXPECT_EQ(treeFailure(R"([{ "type": "file", "path": null, "size": 1 }])"), unreadable("\"path\" is missing"));
}

TEST(HubListing, TakesNoTreeOfOtherTypes)
{
    EXPECT_EQ(treeFailure(R"([{ "type": "file", "path": 1, "size": 1 }])"), unreadable("\"path\" is no text"));
    for (const char* size : { "\"1\"", "1.5", "1e300", "9223372036854775808", "99999999999999999999", "true", "[]" })
        EXPECT_EQ(treeFailure(std::string(R"([{ "type": "file", "path": "a", "size": )") + size + "}]"),
            unreadable("\"size\" is no integer"));
    for (const char* element : { "1", "\"file\"", "null", "[]" })
        EXPECT_EQ(treeFailure(std::string("[") + element + "]"), unreadable("what should have \"type\" is no object"));
    for (const char* other : { "1", "\"[]\"", "null", "true", "{}" })
        EXPECT_EQ(treeFailure(other), unreadable("it is no list"));
    EXPECT_NE(treeFailure(R"({ "error": { "type": "file", "path": "a", "size": 1 } })"), "none");
}

TEST(HubListing, TakesNoTreeThatIsNoJSON)
{
    for (const char* text : { "", "<html>", "[{", "[] []", "[{\"type\":\"\xFF\"}]", "[1,]" })
        EXPECT_NE(treeFailure(text), "none") << text;
    EXPECT_EQ(treeFailure("<html>"), unreadable("it is no JSON"));
    EXPECT_EQ(treeFailure(std::string(1'000'000, '[')), unreadable("it is nested too deeply"));
    EXPECT_EQ(refsFailure(std::string(1'000'000, '[')), unreadable("it is nested too deeply"));
}

TEST(HubListing, GivesTheNamesOfTags)
{
    EXPECT_THAT(
        decodeTags(R"({ "tags": [ { "name": "v2", "ref": "refs/tags/v2" }, { "name": "v1" } ], "branches": 7 })"),
        ElementsAre("v2", "v1"));
    EXPECT_TRUE(decodeTags("{}").empty());
    EXPECT_TRUE(decodeTags(R"({ "tags": null })").empty());
}

TEST(HubListing, TakesNoRefsOfAnotherShape)
{
    EXPECT_EQ(refsFailure("[]"), unreadable("it is no object"));
    EXPECT_EQ(refsFailure(R"({ "tags": {} })"), unreadable("\"tags\" is no list"));
    EXPECT_EQ(refsFailure(R"({ "tags": [ {} ] })"), unreadable("\"name\" is missing"));
    EXPECT_EQ(refsFailure(R"({ "tags": [ "v1" ] })"), unreadable("what should have \"name\" is no object"));
    EXPECT_EQ(refsFailure("no"), unreadable("it is no JSON"));
}

TEST(HubEndpoint, ComesFromTheEnvironment)
{
    ::unsetenv("TRW_HUB_ENDPOINT");
    const std::string usual = hubEndpoint();
    EXPECT_TRUE(usual.starts_with("https://"));
    ::setenv("TRW_HUB_ENDPOINT", "https://mirror.example/hub//", 1);
    EXPECT_EQ(hubEndpoint(), "https://mirror.example/hub");
    ::setenv("TRW_HUB_ENDPOINT", "", 1);
    EXPECT_EQ(hubEndpoint(), usual);
    ::unsetenv("TRW_HUB_ENDPOINT");
}

TEST(HubEndpoint, IsSecureUnlessItIsThisComputer)
{
    for (const char* good : { "https://hub.example", "http://127.0.0.1", "http://127.0.0.1:80", "http://localhost:8080",
             "http://[::1]:1/mirror" })
        EXPECT_TRUE(isTrustedOrigin(good)) << good;
    for (const char* bad : { "", "http://hub.example", "http://127.0.0.1.hub.example", "http://localhost.hub.example",
             "http://127.0.0.1:80@hub.example", "ftp://localhost", "hub.example", "http://1", "http://" })
        EXPECT_FALSE(isTrustedOrigin(bad)) << bad;
}
