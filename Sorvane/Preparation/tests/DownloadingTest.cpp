// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ScriptedServer.h"

#include <PlatformSupport/HandTurnedLoop.h>
#include <Sorvane/InstallationError.h>
#include <Sorvane/VerifiedAssetCache.h>

#include <gtest/gtest.h>
#include <TemporaryFolder.h>
#include <TestHub.h>

#include <algorithm>
#include <thread>

namespace Sorvane {
namespace {

namespace fs = std::filesystem;
using PlatformSupport::URLError;

// The cache with a real network under it, and a server that does what servers do.
class Downloading : public testing::Test {
protected:
    PlatformSupport::Task<> start()
    {
        return PlatformSupport::startDetachedTask(loop.executor(), [this] {
            const auto progress = [this](double fraction) { report(fraction); };
            return cache.fetch(asset, folder / "place/file.gguf", progress);
        });
    }

    void fetch()
    {
        loop.finish(start());
        loop.turn();
    }

    // From the thread of the transfers.
    void report(double fraction)
    {
        PlatformSupport::startDetachedTask(loop.executor(), [this, fraction]() -> PlatformSupport::Awaitable<void> {
            fractions.push_back(fraction);
            co_return;
        });
    }

    // What the fetch ends with; nothing is left of it.
    std::string failureWith(const std::string& fault)
    {
        hub.clear();
        hub.play(fault);
        std::string failure;
        try {
            fetch();
        } catch (const std::exception& error) {
            failure = error.what();
        }
        EXPECT_TRUE(fs::is_empty(folder / "place")) << fault;
        return failure;
    }

    static std::string badServerResponse() { return URLError(URLError::Code::badServerResponse).message(); }
    static std::string checksum() { return InstallationError(InstallationError::Case::checksum).what(); }

    TestSupport::TestHub hub;
    TestSupport::TemporaryFolder folder;
    std::string bytes = std::string(3'000'000, 'w');
    DownloadAsset asset { hub.origin() + "/owner/name/resolve/v1/file.gguf", bytes.size(), sha256(bytes) };
    fs::path published = hub.publish("owner/name", "v1", "file.gguf", bytes);
    PlatformSupport::HandTurnedLoop loop;
    VerifiedAssetCache cache;
    std::vector<double> fractions;
};

TEST_F(Downloading, FollowsTheHubToItsStorage)
{
    fetch();
    EXPECT_EQ(folder.contents("place/file.gguf"), bytes);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "place"), fs::directory_iterator()), 1);
    fetch();
    EXPECT_EQ(hub.log().size(), 2u); // the address and the storage, once
}

TEST_F(Downloading, ReportsWhatIsThere)
{
    fetch();
    ASSERT_GE(fractions.size(), 2u);
    EXPECT_EQ(fractions.back(), 0.98);
    fractions.pop_back();
    EXPECT_EQ(fractions.back(), 1.0);
    EXPECT_TRUE(std::ranges::is_sorted(fractions));
    EXPECT_LE(fractions.size(), 7u); // no more than every 512 KiB
}

TEST_F(Downloading, TakesNoStatusBut200)
{
    for (const char* const status : { "203", "206" })
        EXPECT_EQ(
            failureWith(std::string(R"({"on": "content/file.gguf", "as": )") + status + "}"), badServerResponse());
    for (const char* const status : { "204", "404", "500" })
        EXPECT_EQ(failureWith(std::string(R"({"on": "*", "status": )") + status + "}"), badServerResponse());
}

TEST_F(Downloading, TakesNoOtherFile)
{
    EXPECT_EQ(failureWith(R"({"on": "content/*", "fault": "flip", "at": 2999999})"), checksum());
    EXPECT_EQ(failureWith(R"({"on": "content/*", "fault": "replace", "with": "an error page"})"), checksum());
    EXPECT_EQ(failureWith(R"({"on": "content/*", "fault": "extra", "bytes": 1})"), checksum());
    EXPECT_EQ(failureWith(R"({"on": "content/*", "fault": "endless"})"), checksum());
}

TEST_F(Downloading, KeepsNothingOfATransferThatBreaksOff)
{
    for (const char* const fault : { "truncate", "reset" }) {
        const std::string failure
            = failureWith(std::string(R"({"on": "content/*", "fault": ")") + fault + R"(", "after": 1000000})");
        EXPECT_FALSE(failure.empty());
        EXPECT_NE(failure, checksum());
    }
    hub.clear();
    fetch();
    EXPECT_EQ(folder.contents("place/file.gguf"), bytes);
    EXPECT_EQ(hub.bytesSent(), static_cast<int64_t>(bytes.size())); // from the first byte on
}

TEST_F(Downloading, EndsWhenItIsCancelled)
{
    hub.play(R"({"on": "content/*", "fault": "stall", "after": 1000000})");
    const auto task = start();
    loop.turnUntil([&] { return !fractions.empty(); });
    EXPECT_FALSE(fs::is_empty(folder / "place"));
    task.cancel();
    EXPECT_THROW(loop.finish(task), PlatformSupport::CancellationError);
    EXPECT_TRUE(fs::is_empty(folder / "place"));
}

} // namespace
} // namespace Sorvane
