// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FakeTransport.h"
#include "TestFiles.h"

#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/Manifest.h>
#include <ModelStore/ModelStore.h>
#include <PlatformSupport/BlockingValue.h>

#include <gtest/gtest.h>

#include <functional>

using namespace ModelStore;

namespace {

// A store in which a model of two files is complete.
class ModelStoreTest : public testing::Test {
protected:
    ModelStoreTest()
    {
        write("meta.json", "{}");
        write("weights/a.bin", "some weights");
        manifest.requested = spec.files;
        for (const char* file : { "meta.json", "weights/a.bin" }) {
            const FileDigest digest = files->digest(store.location(spec) + "/" + file);
            manifest.entries.push_back({ file, digest.size, digest.sha256 });
        }
        writeManifest();
    }

    void write(const std::string& file, std::string_view content)
    {
        const std::string path = store.location(spec) + "/" + file;
        files->makeDirectory(path.substr(0, path.rfind('/')));
        files->write(path, bytesOf(content));
    }
    void writeManifest()
    {
        const Bytes bytes = manifest.serialized();
        write(".trw-meta/manifest", { reinterpret_cast<const char*>(bytes.data()), bytes.size() });
    }

    std::shared_ptr<FoundationFileSystem> files = std::make_shared<FoundationFileSystem>(freshDirectory());
    std::shared_ptr<FakeTransport> transport = std::make_shared<FakeTransport>();
    ::ModelStore::ModelStore store { transport, files, "https://hub.example" };
    ModelSpec spec {
        .repo = "owner/name", .revision = "v1", .files = { "meta.json", "weights/" }, .cacheDirectory = {}
    };
    Manifest manifest;
};

} // namespace

TEST_F(ModelStoreTest, LaysModelsOutByRepositoryAndRevision)
{
    EXPECT_EQ(store.location(spec), files->defaultCacheRoot() + "/tarnwick-models/owner/name/v1");
    spec.cacheDirectory = "/elsewhere";
    EXPECT_EQ(store.location(spec), "/elsewhere");
    EXPECT_EQ(store.storedModel(spec).rootPath, "/elsewhere");
}

TEST_F(ModelStoreTest, TakesACompleteModel)
{
    EXPECT_TRUE(store.isDownloaded(spec));
    write("unlisted", "ignored");
    EXPECT_TRUE(store.isDownloaded(spec));
}

TEST_F(ModelStoreTest, DoubtsAModelOfAnotherRequest)
{
    std::swap(spec.files[0], spec.files[1]);
    EXPECT_FALSE(store.isDownloaded(spec));
    spec.files = {};
    EXPECT_FALSE(store.isDownloaded(spec));
    manifest.requested = {};
    writeManifest();
    EXPECT_FALSE(store.isDownloaded(spec));
}

TEST_F(ModelStoreTest, DoubtsFilesThatChanged)
{
    write("weights/a.bin", "some Weights");
    EXPECT_FALSE(store.isDownloaded(spec));
    write("weights/a.bin", "some weights ");
    EXPECT_FALSE(store.isDownloaded(spec));
    files->remove(store.location(spec) + "/weights/a.bin");
    EXPECT_FALSE(store.isDownloaded(spec));
}

TEST_F(ModelStoreTest, DoubtsAManifestThatIsNotSound)
{
    const Manifest sound = manifest;
    const auto accepted = [&](const std::function<void(Manifest&)>& change) {
        manifest = sound;
        change(manifest);
        writeManifest();
        return store.isDownloaded(spec);
    };
    EXPECT_TRUE(accepted([](Manifest&) {}));
    EXPECT_FALSE(accepted([](Manifest& m) { m.entries.clear(); }));
    EXPECT_FALSE(accepted([](Manifest& m) { m.entries[0].sha256.pop_back(); }));
    EXPECT_FALSE(accepted([](Manifest& m) { m.entries[0].sha256[0] = 'g'; }));
    EXPECT_FALSE(accepted([](Manifest& m) { m.entries[0].sha256[0] = 'A'; }));
    EXPECT_FALSE(accepted([](Manifest& m) { m.entries[0].size = -1; }));
    EXPECT_FALSE(accepted([](Manifest& m) { m.entries[0].size += 1; }));
    EXPECT_FALSE(accepted([](Manifest& m) { m.entries[0].path = "weights/../meta.json"; }));
    write(".trw-meta/manifest", "TRW2");
    EXPECT_FALSE(store.isDownloaded(spec));
    files->remove(store.location(spec) + "/.trw-meta/manifest");
    EXPECT_FALSE(store.isDownloaded(spec));
}

TEST_F(ModelStoreTest, DoubtsUnsafeNames)
{
    for (const char* unsafe : { "../name", "/name", "a//b", "" }) {
        ModelSpec bad = spec;
        bad.repo = unsafe;
        EXPECT_FALSE(store.isDownloaded(bad));
        bad = spec;
        bad.revision = unsafe;
        EXPECT_FALSE(store.isDownloaded(bad));
        bad = spec;
        bad.files.emplace_back(unsafe);
        EXPECT_FALSE(store.isDownloaded(bad));
    }
}

TEST_F(ModelStoreTest, GivesACompleteModelAndReportsOnce)
{
    std::vector<DownloadProgress> reports;
    const auto report = [&](const DownloadProgress& progress) { reports.push_back(progress); };
    const StoredModel model = PlatformSupport::blockingValue([&] { return store.download(spec, report); });
    EXPECT_EQ(model.readString("meta.json"), "{}");
    EXPECT_EQ(reports, (std::vector<DownloadProgress> { { .completedBytes = 14, .totalBytes = 14 } }));
    EXPECT_EQ(reports.front().fraction(), 1);
    EXPECT_TRUE(transport->asked.empty());
}

TEST_F(ModelStoreTest, ReportsACompleteModelOfNoBytes)
{
    write("meta.json", "");
    const FileDigest digest = files->digest(store.location(spec) + "/meta.json");
    manifest.entries = { { "meta.json", digest.size, digest.sha256 } };
    writeManifest();
    std::vector<double> fractions;
    const auto report = [&](const DownloadProgress& progress) { fractions.push_back(progress.fraction()); };
    (void)PlatformSupport::blockingValue([&] { return store.download(spec, report); });
    EXPECT_EQ(fractions, (std::vector<double> { 0 }));
}

TEST_F(ModelStoreTest, ListsWhatHasBeenDownloaded)
{
    EXPECT_TRUE(store.downloadedRevisions("owner/other").empty());
    files->makeDirectory(files->defaultCacheRoot() + "/tarnwick-models/owner/name/v3"); // without a manifest
    spec.revision = "v0";
    write(".trw-meta/manifest", "whatever it says");
    EXPECT_EQ(store.downloadedRevisions("owner/name"), (std::vector<std::string> { "v0", "v1" }));
    const std::vector<StoredModel> models = store.downloadedModels("owner/name");
    ASSERT_EQ(models.size(), 2U);
    EXPECT_EQ(models[1].readString("meta.json"), "{}");
}

TEST_F(ModelStoreTest, AsksTheHubInItsOwnWords)
{
    EXPECT_EQ(store.treeURL(spec), "https://hub.example/api/models/owner/name/tree/v1?recursive=true");
    EXPECT_EQ(store.fileURL(spec, "weights/a.bin"), "https://hub.example/owner/name/resolve/v1/weights/a.bin");
}

TEST(DownloadProgress, GivesAFraction)
{
    const auto fraction = [](int64_t completed, int64_t total) {
        return DownloadProgress { .completedBytes = completed, .totalBytes = total }.fraction();
    };
    EXPECT_EQ(fraction(1, 4), 0.25);
    EXPECT_EQ(fraction(5, 4), 1);
    EXPECT_EQ(fraction(0, 0), 0);
    EXPECT_EQ(fraction(3, 0), 1);
    EXPECT_EQ(fraction(3, -1), 1);
}
