// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TestFiles.h"

#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/Manifest.h>
#include <ModelStore/ModelDistribution.h>
#include <ModelStore/ModelStoreError.h>
#include <PlatformSupport/BlockingValue.h>
#include <PlatformSupport/URLError.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

using namespace ModelStore;

namespace {

class ModelDistributionTest : public testing::Test {
protected:
    // All files of the model, in a directory of the user's.
    void placeFiles(const std::string& directory) const
    {
        files.makeDirectory(directory + "/weights");
        files.write(directory + "/meta.json", bytesOf("{}"));
    }
    void addManifest(const std::string& directory) const
    {
        const FileDigest digest = files.digest(directory + "/meta.json");
        const Manifest manifest { .requested = *distribution.currentFiles(),
            .entries = { { "meta.json", digest.size, digest.sha256 } } };
        files.makeDirectory(directory + "/.trw-meta");
        files.write(directory + "/.trw-meta/manifest", manifest.serialized());
    }
    StoredModel resolve(const ModelPlace& place)
    {
        const auto report = [this](const DownloadProgress&) { ++reports; };
        return PlatformSupport::blockingValue([&] { return distribution.resolve(place, report); });
    }

    // Nobody listens there, so that who comes to the network shows.
    ModelDistributionTest() { ::setenv("TRW_HUB_ENDPOINT", "http://127.0.0.1:1", 1); }
    ~ModelDistributionTest() override { ::unsetenv("TRW_HUB_ENDPOINT"); }

    const FoundationFileSystem files;
    std::string root = freshDirectory();
    ModelDistribution distribution { .repo = "owner/name",
        .revision = "v1",
        .files = { { ModelPlatform::apple, { "meta.json", "weights/" } }, { ModelPlatform::web, { "web.bin" } } } };
    int reports = 0;
};

} // namespace

TEST_F(ModelDistributionTest, TakesTheUsersCopyAsItIs)
{
    placeFiles(root);
    EXPECT_EQ(resolve({ .directory = root, .cacheRoot = {} }).rootPath, root);
    EXPECT_EQ(reports, 0);
    EXPECT_TRUE(distribution.isAvailable({ .directory = root, .cacheRoot = {} }));
    EXPECT_FALSE(distribution.isInstalled({ .directory = root, .cacheRoot = {} }));
}

TEST_F(ModelDistributionTest, ChecksADirectoryThatBelongsToTheStore)
{
    placeFiles(root);
    addManifest(root);
    EXPECT_FALSE(distribution.userPlacedFiles(root).has_value());
    EXPECT_EQ(resolve({ .directory = root, .cacheRoot = {} }).rootPath, root);
    EXPECT_EQ(reports, 1);
    files.write(root + "/meta.json", bytesOf("[]"));
    EXPECT_THROW(resolve({ .directory = root, .cacheRoot = {} }), PlatformSupport::URLError);
}

TEST_F(ModelDistributionTest, FindsAModelInTheManagedCache)
{
    const std::string location = root + "/tarnwick-models/owner/name/v1";
    placeFiles(location);
    addManifest(location);
    EXPECT_TRUE(distribution.isInstalled({ .directory = {}, .cacheRoot = root }));
    EXPECT_TRUE(distribution.isAvailable({ .directory = {}, .cacheRoot = root }));
    EXPECT_EQ(resolve({ .directory = {}, .cacheRoot = root }).rootPath, location);
}

TEST_F(ModelDistributionTest, AsksTheHubForWhatIsMissing)
{
    files.write(root + "/meta.json", bytesOf("{}"));
    EXPECT_THROW(resolve({ .directory = root, .cacheRoot = {} }), PlatformSupport::URLError);
    EXPECT_FALSE(distribution.userPlacedFiles(std::nullopt).has_value());
    EXPECT_FALSE(distribution.isAvailable({ .directory = root, .cacheRoot = root }));
}

TEST_F(ModelDistributionTest, TakesAnyRevisionThatWillDo)
{
    for (const char* revision : { "v1", "v1.4", "v2", "main" }) {
        files.makeDirectory(root + "/tarnwick-models/owner/name/" + revision + "/.trw-meta");
        files.write(root + "/tarnwick-models/owner/name/" + revision + "/.trw-meta/manifest", {});
    }
    EXPECT_EQ(distribution.installedModels(root).size(), 4U);
    const auto from = RevisionRequirement::from("1.0.0");
    EXPECT_EQ(distribution.downloadedRevisions(from, root), (std::vector<std::string> { "v1", "v1.4" }));
    const auto resolving = [&](const RevisionRequirement& requirement) {
        return PlatformSupport::blockingValue([&] { return distribution.resolving(requirement, root); });
    };
    ModelDistribution expected = distribution;
    expected.revision = "v1.4"; // the network is gone; this is there
    EXPECT_EQ(resolving(from), expected);
    expected.revision = "any";
    EXPECT_EQ(resolving(RevisionRequirement::exact("any")), expected);
}

TEST_F(ModelDistributionTest, NeedsFilesForThisProduct)
{
    placeFiles(root);
    distribution.files.erase(ModelPlatform::apple);
    EXPECT_EQ(distribution.currentFiles(), nullptr);
    EXPECT_FALSE(distribution.isInstalled({ .directory = root, .cacheRoot = {} }));
    EXPECT_FALSE(distribution.isAvailable({ .directory = root, .cacheRoot = {} }));
    for (const auto& operation : std::vector<std::function<void()>> {
             [&] { resolve({ .directory = root, .cacheRoot = {} }); }, [&] { (void)distribution.load(root); } }) {
        try {
            operation();
            FAIL();
        } catch (const ModelStoreError& error) {
            EXPECT_EQ(error.description(), "model does not support apple");
        }
    }
}

TEST_F(ModelDistributionTest, LoadsADirectoryThatTheCallerVouchesFor)
{
    EXPECT_THROW((void)distribution.load(root), ModelStoreError);
    placeFiles(root);
    EXPECT_EQ(distribution.load(root).rootPath, root);
}

TEST(ModelPlatform, GoesByItsName)
{
    for (const ModelPlatform platform : allModelPlatforms)
        EXPECT_EQ(modelPlatform(rawValue(platform)), platform);
    EXPECT_EQ(allModelPlatforms.size(), 5U);
    EXPECT_FALSE(modelPlatform("Apple").has_value());
}
