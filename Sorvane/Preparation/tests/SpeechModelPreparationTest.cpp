// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/CancelableSpeechTransport.h>
#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/RunOn.h>
#include <PlatformSupport/URLSession.h>
#include <Sorvane/SpeechModelPreparation.h>

#include <gtest/gtest.h>
#include <TemporaryFolder.h>
#include <TestHub.h>

#include <algorithm>
#include <cstdlib>

namespace Sorvane {
namespace {

namespace fs = std::filesystem;
using PlatformSupport::Awaitable;

// A hub on which the small English model is published as the speech model.
class SpeechModelPreparationTest : public testing::Test {
protected:
    SpeechModelPreparationTest()
    {
        ::setenv("TRW_HUB_ENDPOINT", hub.origin().c_str(), 1);
        fs::create_directories(hub.folder() / "models/tarnwick/ostrel");
        fs::create_directory_symlink(SMALL_MODEL_DIRECTORY, hub.folder() / "models/tarnwick/ostrel/v0.1.0");
    }

    PlatformSupport::Task<> start(const ModelStore::ModelPlace& from)
    {
        return PlatformSupport::startDetachedTask(loop.executor(), [this, from]() -> Awaitable<void> {
            const auto progress = [this](double fraction) { report(fraction); };
            const auto work
                = [this, from, progress] { return SpeechModelPreparation::load(from, transport, progress); };
            engine = co_await PlatformSupport::runOn(pool.executor(), work);
        });
    }

    void load(const ModelStore::ModelPlace& from)
    {
        fractions.clear();
        engine.reset();
        loop.finish(start(from));
        loop.turn();
    }

    // From several threads.
    void report(double fraction)
    {
        PlatformSupport::startDetachedTask(loop.executor(), [this, fraction]() -> Awaitable<void> {
            fractions.push_back(fraction);
            co_return;
        });
    }

    TestSupport::TestHub hub;
    TestSupport::TemporaryFolder folder;
    ModelStore::ModelPlace place { .directory = folder / "speech", .cacheRoot = {} };
    std::shared_ptr<ModelStore::ModelTransport> transport
        = std::make_shared<ModelStore::CancelableSpeechTransport>(PlatformSupport::URLSession::shared());
    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::BlockingPool pool { 1 };
    std::unique_ptr<Ostrel::Ostrel> engine;
    std::vector<double> fractions;
};

TEST_F(SpeechModelPreparationTest, DownloadsAndLoads)
{
    load(place);
    ASSERT_TRUE(engine);
    EXPECT_EQ(engine->sampleRate(), 16'000);
    ASSERT_GE(fractions.size(), 2u);
    EXPECT_TRUE(std::ranges::is_sorted(fractions));
    EXPECT_EQ(fractions.back(), 1.0);
    EXPECT_DOUBLE_EQ(*(fractions.end() - 2), 0.9);
}

TEST_F(SpeechModelPreparationTest, AsksForNothingThatIsThere)
{
    load(place);
    hub.clear();
    load(place);
    EXPECT_TRUE(engine);
    EXPECT_TRUE(hub.log().empty());
    EXPECT_EQ(fractions, (std::vector { 0.9, 1.0 }));
}

TEST_F(SpeechModelPreparationTest, TakesACopyThatTheUserPlacedAsItIs)
{
    load({ .directory = SMALL_MODEL_DIRECTORY, .cacheRoot = {} });
    EXPECT_TRUE(engine);
    EXPECT_TRUE(hub.log().empty());
    EXPECT_EQ(fractions, std::vector { 1.0 });
}

TEST_F(SpeechModelPreparationTest, KeepsTheModelInTheCacheWithoutADirectory)
{
    load({ .directory = {}, .cacheRoot = folder / "cache" });
    EXPECT_TRUE(fs::exists(folder / "cache/tarnwick-models/tarnwick/ostrel/v0.1.0/meta.json"));
}

TEST_F(SpeechModelPreparationTest, LoadsNothingThatIsNotAsListed)
{
    hub.play(R"({"on": "content/embedding.f16", "fault": "flip", "at": 0})");
    EXPECT_THROW(load(place), std::exception);
    EXPECT_FALSE(engine);
    EXPECT_FALSE(fs::exists(folder / "speech/embedding.f16"));
    hub.clear();
    load(place);
    EXPECT_TRUE(engine);
}

TEST_F(SpeechModelPreparationTest, EndsWhenItIsCancelled)
{
    hub.play(R"({"on": "content/encoder.mlmodelc/weights/weight.bin", "fault": "stall", "after": 1000000})");
    const auto task = start(place);
    loop.turnUntil([&] { return !fractions.empty(); });
    task.cancel();
    EXPECT_THROW(loop.finish(task), PlatformSupport::CancellationError);
    EXPECT_FALSE(engine);
    for (const auto& entry : fs::recursive_directory_iterator(folder / "speech"))
        EXPECT_FALSE(entry.is_regular_file() && entry.path().filename() == "weight.bin") << entry.path();
}

TEST_F(SpeechModelPreparationTest, DoesNothingInACancelledTask)
{
    const auto task = start(place);
    task.cancel();
    EXPECT_THROW(loop.finish(task), PlatformSupport::CancellationError);
    EXPECT_TRUE(hub.log().empty());
}

} // namespace
} // namespace Sorvane
