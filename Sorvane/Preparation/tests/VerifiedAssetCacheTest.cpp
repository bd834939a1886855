// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ScriptedServer.h"

#include <PlatformSupport/HandTurnedLoop.h>
#include <Sorvane/InstallationError.h>
#include <Sorvane/VerifiedAssetCache.h>

#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <TemporaryFolder.h>

namespace Sorvane {
namespace {

namespace fs = std::filesystem;
using PlatformSupport::Awaitable;

class VerifiedAssetCacheTest : public testing::Test {
protected:
    void fetch(const DownloadAsset& wanted)
    {
        loop.finish(PlatformSupport::startDetachedTask(loop.executor(), [this, wanted] {
            return cache.fetch(wanted, destination, [this](double fraction) { fractions.push_back(fraction); });
        }));
    }

    // The case of the installation error that it ends with.
    std::optional<InstallationError::Case> failureOf(const DownloadAsset& wanted)
    {
        try {
            fetch(wanted);
            return std::nullopt;
        } catch (const InstallationError& error) {
            return error.which();
        }
    }

    std::string stored() const { return folder.contents("cleanup/model.gguf"); }

    // All that is there: temporary files would show.
    std::set<std::string> namesBeside() const
    {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(destination.parent_path()))
            names.insert(entry.path().filename());
        return names;
    }

    void store(const std::string& bytes) const
    {
        fs::create_directories(destination.parent_path());
        (void)folder.write("cleanup/model.gguf", bytes);
    }

    TestSupport::TemporaryFolder folder;
    fs::path destination = folder / "cleanup/model.gguf";
    PlatformSupport::HandTurnedLoop loop;
    ScriptedServer server;
    VerifiedAssetCache cache { server.download() };
    DownloadAsset asset = server.serve("https://example.org/model.gguf", "the weights");
    std::vector<double> fractions;
};

TEST_F(VerifiedAssetCacheTest, BringsAVerifiedFileToItsPlace)
{
    fetch(asset);
    EXPECT_EQ(stored(), "the weights");
    EXPECT_EQ(namesBeside(), std::set<std::string> { "model.gguf" });
    EXPECT_EQ(fractions, (std::vector { 0.5, 1.0, 0.98 }));
}

TEST_F(VerifiedAssetCacheTest, LeavesAVerifiedFileAlone)
{
    store("the weights");
    fetch(asset);
    EXPECT_TRUE(server.requests.empty());
    EXPECT_EQ(fractions, std::vector { 0.98 });
}

TEST_F(VerifiedAssetCacheTest, ReplacesAFileOfTheRightSizeButAnotherDigest)
{
    store("the_weights");
    fetch(asset);
    EXPECT_EQ(stored(), "the weights");
    EXPECT_EQ(server.requests.size(), 1u);
}

// Were it read, this test would take hours.
TEST_F(VerifiedAssetCacheTest, DoesNotReadAFileOfAnotherSize)
{
    store("");
    fs::resize_file(destination, uint64_t { 1 } << 42);
    fetch(asset);
    EXPECT_EQ(stored(), "the weights");
}

TEST_F(VerifiedAssetCacheTest, ReadsAFileOfManyPieces)
{
    std::string bytes(9 * 1024 * 1024 + 1, 'a'); // two whole pieces and a bit
    bytes.back() = 'b';
    const auto large = server.serve("https://example.org/large", bytes);
    fetch(large);
    fetch(large);
    EXPECT_EQ(server.requests.size(), 1u);
    EXPECT_EQ(stored(), bytes);
}

TEST_F(VerifiedAssetCacheTest, RefusesADownloadOfAnotherDigest)
{
    server.files[asset.url] = "the_weights";
    EXPECT_EQ(failureOf(asset), InstallationError::Case::checksum);
    EXPECT_TRUE(namesBeside().empty());
}

TEST_F(VerifiedAssetCacheTest, RefusesADownloadOfAnotherSize)
{
    for (const char* const bytes : { "", "the weight", "the weights!" }) {
        server.files[asset.url] = bytes;
        EXPECT_EQ(failureOf(asset), InstallationError::Case::checksum) << bytes;
    }
    EXPECT_TRUE(namesBeside().empty());
}

TEST_F(VerifiedAssetCacheTest, RefusesADigestInCapitals)
{
    for (auto& digit : asset.sha256)
        digit = static_cast<char>(std::toupper(static_cast<unsigned char>(digit)));
    EXPECT_EQ(failureOf(asset), InstallationError::Case::checksum);
}

TEST_F(VerifiedAssetCacheTest, LeavesAWrongFileUntilAGoodOneReplacesIt)
{
    store("partial");
    server.files[asset.url] = "the_weights";
    EXPECT_EQ(failureOf(asset), InstallationError::Case::checksum);
    EXPECT_EQ(stored(), "partial");
    server.files[asset.url] = "the weights";
    fetch(asset);
    EXPECT_EQ(stored(), "the weights");
}

TEST_F(VerifiedAssetCacheTest, AsksForAFileBesideItsPlaceAndForNoMoreThanItsSize)
{
    std::optional<PlatformSupport::DownloadRequest> asked;
    cache.download = [&](const PlatformSupport::DownloadRequest& request,
                         const PreparationProgress&) -> Awaitable<PlatformSupport::TemporaryFile> {
        asked = request;
        throw PlatformSupport::DataLengthError(12);
        co_return PlatformSupport::TemporaryFile(folder.path());
    };
    EXPECT_EQ(failureOf(asset), InstallationError::Case::checksum);
    EXPECT_EQ(asked->url, asset.url);
    EXPECT_EQ(asked->folder, destination.parent_path());
    EXPECT_EQ(asked->largestSize, 11);
}

TEST_F(VerifiedAssetCacheTest, PassesOnWhatTheDownloadThrows)
{
    store("partial");
    server.files.clear();
    EXPECT_THROW(fetch(asset), PlatformSupport::URLError);
    EXPECT_EQ(stored(), "partial");
    EXPECT_TRUE(fractions.empty());
}

TEST_F(VerifiedAssetCacheTest, DownloadsNothingThatTheDiskHasNoRoomFor)
{
    asset.bytes = uint64_t { 1 } << 62;
    EXPECT_THROW(fetch(asset), DiskSpaceError);
    EXPECT_TRUE(server.requests.empty());
}

TEST_F(VerifiedAssetCacheTest, FailsWhereAFolderIsInTheWay)
{
    fs::create_directories(destination / "folder");
    EXPECT_THROW(fetch(asset), fs::filesystem_error);
    EXPECT_EQ(namesBeside(), std::set<std::string> { "model.gguf" });
}

// Not to be told from a wrong file by mistake, which would be downloaded again.
TEST_F(VerifiedAssetCacheTest, FailsForAFileThatCannotBeOpened)
{
    store("the weights");
    const auto passable = fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_exec;
    fs::permissions(folder.path(), passable);
    fs::permissions(destination.parent_path(), passable);
    fs::permissions(destination, fs::perms::none);
    constexpr uid_t nobody = 65534;
    const int before = ::setfsuid(nobody); // this thread may do no more than others, even the superuser's
    EXPECT_THROW(fetch(asset), fs::filesystem_error);
    ::setfsuid(static_cast<uid_t>(before));
    EXPECT_TRUE(server.requests.empty());
}

TEST_F(VerifiedAssetCacheTest, DoesNothingInACancelledTask)
{
    const auto task = PlatformSupport::startDetachedTask(
        loop.executor(), [this] { return cache.fetch(asset, destination, [](double) {}); });
    task.cancel();
    EXPECT_THROW(loop.finish(task), PlatformSupport::CancellationError);
    EXPECT_TRUE(server.requests.empty());
}

TEST_F(VerifiedAssetCacheTest, KeepsNothingOfACancelledDownload)
{
    server.onAnswer = [] { PlatformSupport::TaskContext::current()->cancel(); };
    EXPECT_THROW(fetch(asset), PlatformSupport::CancellationError);
    EXPECT_TRUE(namesBeside().empty());
}

} // namespace
} // namespace Sorvane
