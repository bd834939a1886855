// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FakeTransport.h"
#include "TestFiles.h"

#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/ModelStore.h>
#include <ModelStore/ModelStoreError.h>
#include <PlatformSupport/BlockingValue.h>

#include <gmock/gmock.h>

using namespace ModelStore;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

const std::string hub = "https://hub.example";

// Files on a disk of a size that the test chooses.
class SmallDisk final : public FileSystem {
public:
    explicit SmallDisk(const std::string& root)
        : disk_(root)
    {
    }
    bool exists(const std::string& path) const override { return disk_.exists(path); }
    std::optional<int64_t> size(const std::string& path) const override { return disk_.size(path); }
    Bytes read(const std::string& path) const override { return disk_.read(path); }
    void write(const std::string& path, const Bytes& bytes) const override { disk_.write(path, bytes); }
    void makeDirectory(const std::string& path) const override { disk_.makeDirectory(path); }
    void move(const std::string& from, const std::string& to) const override { disk_.move(from, to); }
    void remove(const std::string& path) const override { disk_.remove(path); }
    std::string defaultCacheRoot() const override { return disk_.defaultCacheRoot(); }
    std::optional<int64_t> availableBytes(const std::string&) const override { return available; }

    std::optional<int64_t> available;

private:
    FoundationFileSystem disk_;
};

// A model of a large file and a small one.
class DownloadTest : public testing::Test {
protected:
    DownloadTest()
    {
        transport->add("weights/a.bin", "some weights");
        transport->add("meta.json", "{}", false);
    }

    StoredModel download()
    {
        reports.clear();
        transport->asked.clear();
        const auto report = [this](const DownloadProgress& progress) { reports.push_back(progress); };
        return PlatformSupport::blockingValue([&] { return store.download(spec, report); });
    }
    std::string failure()
    {
        try {
            download();
        } catch (const std::exception& error) {
            return error.what();
        }
        return "none";
    }
    std::string path(const std::string& file) const { return store.location(spec) + "/" + file; }
    std::string contents(const std::string& file) const { return store.storedModel(spec).readString(file); }
    static std::string address(const std::string& file) { return hub + "/owner/name/resolve/v1/" + file; }

    std::shared_ptr<FakeTransport> transport = std::make_shared<FakeTransport>();
    std::shared_ptr<SmallDisk> disk = std::make_shared<SmallDisk>(freshDirectory());
    ::ModelStore::ModelStore store { transport, disk, hub };
    ModelSpec spec {
        .repo = "owner/name", .revision = "v1", .files = { "weights/", "meta.json" }, .cacheDirectory = {}
    };
    std::vector<DownloadProgress> reports;
};

} // namespace

TEST_F(DownloadTest, BringsAModelInTheOrderOfTheRequest)
{
    EXPECT_EQ(download().readString("weights/a.bin"), "some weights");
    EXPECT_EQ(contents("meta.json"), "{}");
    EXPECT_THAT(transport->asked, ElementsAre(store.treeURL(spec), address("weights/a.bin"), address("meta.json")));
    EXPECT_THAT(transport->largestSizes, ElementsAre(12, 2));
    EXPECT_THAT(reports, ElementsAre(DownloadProgress { 12, 14 }, DownloadProgress { 14, 14 }));
    EXPECT_TRUE(store.isDownloaded(spec));
    EXPECT_EQ(transport->finished, 1);
    EXPECT_TRUE(std::filesystem::exists(path(".trw-meta/weights"))); // but nothing in it
    EXPECT_TRUE(std::filesystem::is_empty(path(".trw-meta/weights")));
}

TEST_F(DownloadTest, RecordsTheDigestOfAFileThatIsListedWithoutOne)
{
    download();
    const std::optional<Manifest> manifest = Manifest::parse(disk->read(path(".trw-meta/manifest")));
    EXPECT_EQ(manifest->requested, spec.files);
    EXPECT_EQ(manifest->entries[0].sha256, *transport->listing[0].sha256);
    EXPECT_EQ(manifest->entries[1], (Manifest::Entry { "meta.json", 2, SHA256::hex(SHA256::digest(bytesOf("{}"))) }));
}

TEST_F(DownloadTest, NeedsNoNetworkForACompleteModel)
{
    download();
    download();
    EXPECT_TRUE(transport->asked.empty());
    EXPECT_THAT(reports, ElementsAre(DownloadProgress { 14, 14 }));
}

TEST_F(DownloadTest, RepairsTheDamagedFileAndThoseWithoutADigest)
{
    transport->add("weights/b.bin", "more weights");
    download();
    disk->write(path("weights/b.bin"), bytesOf("more Weights"));
    download();
    EXPECT_THAT(transport->asked, ElementsAre(store.treeURL(spec), address("weights/b.bin"), address("meta.json")));
    EXPECT_EQ(contents("weights/b.bin"), "more weights");
    EXPECT_THAT(reports, ElementsAre(DownloadProgress { 24, 26 }, DownloadProgress { 26, 26 }));
}

TEST_F(DownloadTest, RefusesUnsafeNamesBeforeItDoesAnything)
{
    for (const char* unsafe : { "../name", "/name", "a//b", "" }) {
        spec.revision = unsafe;
        EXPECT_EQ(failure(), "invalid model specification");
        EXPECT_TRUE(transport->asked.empty());
    }
    EXPECT_TRUE(std::filesystem::is_empty(disk->defaultCacheRoot()));
}

TEST_F(DownloadTest, LeavesWhatItHasWhenTheLineBreaks)
{
    transport->broken = "meta.json";
    disk->makeDirectory(path(".trw-meta"));
    disk->write(path(".trw-meta/meta.json.part"), bytesOf("of an earlier attempt"));
    EXPECT_EQ(failure(), "the line is broken");
    EXPECT_FALSE(transport->foundStaging);
    EXPECT_FALSE(disk->exists(path(".trw-meta/meta.json.part")));
    EXPECT_EQ(contents("weights/a.bin"), "some weights");
    EXPECT_FALSE(disk->exists(path(".trw-meta/manifest")));
    EXPECT_EQ(transport->finished, 1);

    transport->broken.clear();
    download();
    EXPECT_THAT(transport->asked, ElementsAre(store.treeURL(spec), address("meta.json")));
}

TEST_F(DownloadTest, SaysByHowMuchAFileHasTheWrongSize)
{
    transport->contents["weights/a.bin"] = "some";
    EXPECT_EQ(failure(), "integrity check failed for weights/a.bin: size 4 != 12");
    transport->contents.erase("weights/a.bin");
    EXPECT_EQ(failure(), "integrity check failed for weights/a.bin: size missing != 12");
    EXPECT_FALSE(disk->exists(path("weights/a.bin")));
    EXPECT_FALSE(disk->exists(path(".trw-meta/weights/a.bin.part")));
}

TEST_F(DownloadTest, TakesNoFileWithAnotherDigest)
{
    transport->contents["weights/a.bin"] = "same lengths";
    EXPECT_EQ(failure(), "integrity check failed for weights/a.bin: sha256 mismatch");
    EXPECT_FALSE(disk->exists(path("weights/a.bin")));
    EXPECT_FALSE(disk->exists(path(".trw-meta/weights/a.bin.part")));
    EXPECT_TRUE(store.downloadedRevisions("owner/name").empty());
}

TEST_F(DownloadTest, ComparesDigestsAsTheyAreWritten)
{
    std::string& digest = *transport->listing[0].sha256;
    std::ranges::transform(digest, digest.begin(), [](unsigned char c) { return std::toupper(c); });
    EXPECT_EQ(failure(), "integrity check failed for weights/a.bin: sha256 mismatch");
}

TEST_F(DownloadTest, ComparesOnlyTheSizeOfAFileWithoutADigest)
{
    transport->contents["meta.json"] = "[]";
    download();
    EXPECT_EQ(contents("meta.json"), "[]");
}

TEST_F(DownloadTest, SaysWhatIsNotInTheRepository)
{
    spec.files = { "meta.json", "vocabulary.json" };
    EXPECT_EQ(failure(), "owner/name/vocabulary.json is not in the repo at that revision");
    EXPECT_THAT(transport->asked, ElementsAre(store.treeURL(spec)));
    EXPECT_EQ(transport->finished, 0);
}

TEST_F(DownloadTest, DoesNotBeginWhatCannotFit)
{
    disk->available = 13;
    EXPECT_EQ(failure(), "There is not enough space for the model: it needs 14 bytes, and 13 bytes are free.");
    EXPECT_THAT(transport->asked, ElementsAre(store.treeURL(spec)));
    transport->listing[0].size = 1'234'567'890;
    disk->available = 2'000'000;
    EXPECT_EQ(failure(), "There is not enough space for the model: it needs 1.2 GB, and 2.0 MB are free.");
    transport->listing[0].size = std::numeric_limits<int64_t>::max();
    EXPECT_THAT(failure(), HasSubstr("it needs 9223.4 PB"));
    transport->listing[0].size = 12;
    disk->available = 14;
    download();
    disk->remove(path("meta.json"));
    disk->available = 2; // the other file is there
    download();
}

TEST_F(DownloadTest, ComesFromTrustedOriginsOnly)
{
    const ::ModelStore::ModelStore plain(transport, disk, "http://hub.example");
    try {
        (void)PlatformSupport::blockingValue([&] { return plain.download(spec, {}); });
        FAIL();
    } catch (const ModelStoreError& error) {
        EXPECT_EQ(
            error.description(), "models come over https, or from this computer, and not from http://hub.example");
    }
    EXPECT_TRUE(transport->asked.empty());
}

TEST_F(DownloadTest, KeepsWhatWasFetchedWhenTheManifestCannotBeWritten)
{
    disk->makeDirectory(path(".trw-meta/manifest/in the way"));
    EXPECT_NE(failure(), "none");
    EXPECT_EQ(contents("weights/a.bin"), "some weights");
    disk->remove(path(".trw-meta/manifest"));
    download();
    EXPECT_THAT(transport->asked, ElementsAre(store.treeURL(spec), address("meta.json")));
}

TEST_F(DownloadTest, PutsAModelWhereItsSpecSays)
{
    spec.cacheDirectory = disk->defaultCacheRoot() + "/mine";
    EXPECT_EQ(download().rootPath, *spec.cacheDirectory);
    EXPECT_EQ(contents("meta.json"), "{}");
}

TEST_F(DownloadTest, FindsTheRevisionToAskFor)
{
    const auto resolved = [&](const RevisionRequirement& requirement) {
        return PlatformSupport::blockingValue([&] { return store.resolveRevision("owner/name", requirement); });
    };
    const auto from = RevisionRequirement::from("1.0");
    EXPECT_EQ(resolved(RevisionRequirement::exact("main")), "main");
    EXPECT_TRUE(transport->asked.empty());
    EXPECT_EQ(resolved(from), "1.0"); // no network, and nothing is there
    transport->published = { "v2", "main" };
    EXPECT_EQ(resolved(from), "1.0");
    transport->published->push_back("v1.1");
    EXPECT_EQ(resolved(from), "v1.1");
    EXPECT_THAT(transport->asked, testing::Each(hub + "/api/models/owner/name/refs"));
    EXPECT_EQ(resolved(RevisionRequirement::from("abc")), "abc");
}

TEST(ModelTransport, ListsNoTagsUnlessItCan)
{
    class Plain final : public ModelTransport {
        PlatformSupport::Awaitable<std::vector<RemoteEntry>> tree(std::string) override
        {
            co_return std::vector<RemoteEntry>();
        }
        PlatformSupport::Awaitable<void> download(std::string, std::string, int64_t, BytesCallback) override
        {
            co_return;
        }
    };
    Plain plain;
    EXPECT_THAT([&] { PlatformSupport::blockingValue([&] { return plain.ModelTransport::tags("url"); }); },
        testing::ThrowsMessage<ModelStoreError>("tag listing not supported by this transport"));
    EXPECT_NO_THROW(PlatformSupport::blockingValue([&] { return plain.ModelTransport::finishDownloads(); }));
}
