// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelCatalog/LoadedModel.h>
#include <ModelStore/FoundationFileSystem.h>
#include <PlatformSupport/HandTurnedLoop.h>

#include <gmock/gmock.h>

#include <stdexcept>

using namespace ModelCatalog;
using ModelStore::DownloadProgress;
using ModelStore::StoredModel;
using PlatformSupport::Awaitable;
using testing::ElementsAre;

namespace {

class LoadedModelTest : public testing::Test {
protected:
    using Model = LoadedModel<std::string>;

    Awaitable<StoredModel> resolve(ModelStore::ModelPlace place, ModelStore::DownloadProgressCallback progress)
    {
        ++resolved;
        for (const int64_t bytes : { 0, 50, 100 })
            progress({ .completedBytes = bytes, .totalBytes = 100 });
        if (fails)
            throw std::runtime_error("no network");
        co_return StoredModel::platformLocal(*place.directory);
    }
    Awaitable<std::string> build(StoredModel stored)
    {
        ++built;
        co_return "loaded from " + stored.rootPath;
    }

    template <typename Operation> auto finish(Operation operation)
    {
        return loop.finish(PlatformSupport::startTask(loop.executor(), operation));
    }

    PlatformSupport::HandTurnedLoop loop;
    int resolved = 0;
    int built = 0;
    bool fails = false;
    Model model { loop.executor(),
        [this](ModelStore::ModelPlace place, ModelStore::DownloadProgressCallback progress) {
            return resolve(std::move(place), std::move(progress));
        },
        [](const ModelStore::ModelPlace& place) { return place.directory == "/here"; },
        { .directory = "/here", .cacheRoot = {} }, [this](StoredModel stored) { return build(std::move(stored)); } };
};

} // namespace

TEST_F(LoadedModelTest, IsLoadedOnce)
{
    EXPECT_TRUE(model.isDownloaded());
    EXPECT_EQ(finish([&] { return model.value(); }), "loaded from /here");
    EXPECT_EQ(finish([&] { return model.load([](const ModelLoadProgress&) {}); }), "loaded from /here");
    finish([&] { return model.download([](double) {}); });
    EXPECT_EQ(resolved, 1);
    EXPECT_EQ(built, 1);
}

TEST_F(LoadedModelTest, IsResolvedAgainAfterAFailure)
{
    fails = true;
    EXPECT_THROW(finish([&] { return model.value(); }), std::runtime_error);
    EXPECT_EQ(built, 0);
    fails = false;
    EXPECT_EQ(finish([&] { return model.value(); }), "loaded from /here");
    EXPECT_EQ(resolved, 2);
}

TEST_F(LoadedModelTest, TellsTheTwoPhasesOfALoad)
{
    std::vector<ModelLoadProgress> reports;
    finish([&] { return model.load([&](const ModelLoadProgress& progress) { reports.push_back(progress); }); });
    using Phase = ModelLoadPhase;
    EXPECT_THAT(reports,
        ElementsAre(ModelLoadProgress { Phase::downloading, 0 }, ModelLoadProgress { Phase::downloading, 0.5 },
            ModelLoadProgress { Phase::preparing, 0 }, ModelLoadProgress { Phase::preparing, 1 }));
}

TEST_F(LoadedModelTest, TellsOfTheFilesAlone)
{
    std::vector<double> fractions;
    finish([&] { return model.download([&](double fraction) { fractions.push_back(fraction); }); });
    EXPECT_THAT(fractions, ElementsAre(0, 0.5, 1, 1)); // the files are there, and then the model
    EXPECT_EQ(built, 1);
}

TEST(ModelLoadProgress, DividesALoadInHalves)
{
    EXPECT_EQ(ModelLoadProgress::of(0.49999).phase, ModelLoadPhase::downloading);
    EXPECT_NEAR(ModelLoadProgress::of(0.49999).fraction, 1, 0.001);
    EXPECT_EQ(ModelLoadProgress::of(0.5), (ModelLoadProgress { ModelLoadPhase::preparing, 0 }));
    EXPECT_EQ(ModelLoadProgress::of(0.75).fraction, 0.5);
    EXPECT_EQ(ModelLoadProgress::of(1.25).fraction, 1);
    EXPECT_EQ(ModelLoadProgress::ofFiles(0.25), 0.5);
    EXPECT_EQ(ModelLoadProgress::ofFiles(0.5), 1);
}

TEST(LoadedModel, ComesFromADistribution)
{
    PlatformSupport::HandTurnedLoop loop;
    const ModelStore::ModelDistribution distribution {
        .repo = "owner/name", .revision = "v1", .files = { { ModelStore::ModelPlatform::apple, { "meta.json" } } }
    };
    const auto build = [](StoredModel model) -> Awaitable<std::string> { co_return model.rootPath; };
    const LoadedModel<std::string> absent(
        loop.executor(), distribution, { .directory = "/absent", .cacheRoot = "/absent" }, build);
    EXPECT_FALSE(absent.isDownloaded());
    const std::string place = testing::TempDir() + "loaded-model";
    const ModelStore::FoundationFileSystem files;
    files.makeDirectory(place);
    files.write(place + "/meta.json", {});
    const LoadedModel<std::string> placed(
        loop.executor(), distribution, { .directory = place, .cacheRoot = {} }, build);
    EXPECT_TRUE(placed.isDownloaded());
    EXPECT_EQ(loop.finish(PlatformSupport::startTask(loop.executor(), [&] { return placed.value(); })), place);
}
