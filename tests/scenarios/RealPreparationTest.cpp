// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeDesktop.h>
#include <DesktopFakes/FakeMicrophone.h>
#include <PlatformSupport/HandTurnedClock.h>
#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/UserDefaults.h>
#include <Sorvane/DictationController.h>
#include <Sorvane/LinkGrammarTagger.h>

#include <DictationModels.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <PublishedModels.h>

#include <algorithm>
#include <cstdlib>

namespace fs = std::filesystem;

namespace Scenarios {
namespace {

using Sorvane::DictationPhase;
using testing::ElementsAre;

// The controller of a user whose models are yet to be downloaded, with a hub that has them.
class RealPreparation : public testing::Test {
protected:
    RealPreparation()
    {
        ::setenv("TRW_HUB_ENDPOINT", models.hub.origin().c_str(), 1);
        controller.preparation().onChange = [this, mirror = controller.preparation().onChange] {
            mirror();
            if (statuses.empty() || statuses.back() != controller.status())
                statuses.push_back(controller.status());
        };
    }

    // Until nothing is being prepared any more; the status then.
    std::string prepare()
    {
        statuses.clear();
        controller.prepareModel();
        loop.turnUntil([&] { return controller.phase() == DictationPhase::idle; });
        return controller.status();
    }

    // The places of the hub that were asked for.
    bool wasAskedFor(const std::string& place) const
    {
        return std::ranges::any_of(models.hub.log(), [&](const auto& request) { return request.place == place; });
    }

    Sorvane::DictationServices dictationServices()
    {
        return {
            .mainThread = loop.executor(),
            .clock = clock,
            .uuids = uuids,
            .defaults = defaults,
            .desktop = desktop.services(),
            .microphone = microphone,
            .historyDirectory = history / "Transcripts",
            .cleanup = services.cleanup(tagger, models.cleanup()),
            .loadSpeech = Sorvane::speechLoader(services, { .directory = models.speech(), .cacheRoot = {} }),
            .prepareCleanup = Sorvane::cleanupPreparation(services, models.cleanup()),
        };
    }

    PublishedModels models;
    TestSupport::TemporaryFolder history;
    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::HandTurnedClock clock { loop };
    DesktopFakes::FakeDesktop desktop { loop, clock };
    DesktopFakes::FakeMicrophone microphone { { .sampleRate = 16'000, .channels = 1 } };
    PlatformSupport::MemoryUserDefaults defaults;
    PlatformSupport::RandomUUIDs uuids;
    Sorvane::LinkGrammarTagger tagger;
    Sorvane::Composition composition { .version = "test", .cleanupAssets = [this] { return models.assets(); } };
    Sorvane::ModelServices services { composition, Sorvane::Network::reachable() };
    Sorvane::DictationController controller { dictationServices() };
    std::vector<std::string> statuses;
};

TEST_F(RealPreparation, EndsReadyForDictation)
{
    EXPECT_EQ(prepare(), "Ready for dictation.");
    EXPECT_THAT(
        statuses, ElementsAre("Preparing speech recognition…", "Preparing text cleanup…", "Ready for dictation."));
    EXPECT_TRUE(controller.readiness().modelReady);
    EXPECT_TRUE(controller.modelDownloaded());
    EXPECT_EQ(controller.progress(), 1);
}

TEST_F(RealPreparation, SaysWhatTheHubAnsweredAndCanBeTriedAgain)
{
    models.hub.play(R"({"on": "tree", "status": 503, "times": 1})");
    EXPECT_THAT(
        prepare(), testing::MatchesRegex("Couldn’t prepare speech recognition\\. .*503.* Retry when you’re ready\\."));
    EXPECT_FALSE(controller.readiness().modelReady);
    EXPECT_EQ(prepare(), "Ready for dictation.");
}

TEST_F(RealPreparation, KeepsTheSpeechModelWhenTheCleanupFails)
{
    models.hub.play(R"({"on": "content/s1-mini-q4_k_m.gguf", "fault": "flip", "at": 7, "times": 1})");
    EXPECT_EQ(prepare(),
        "Couldn’t prepare text cleanup. The download could not be verified. Please retry. Retry when you’re ready.");
    EXPECT_TRUE(controller.modelReady());
    EXPECT_FALSE(controller.readiness().modelReady);
    models.hub.clear();
    EXPECT_EQ(prepare(), "Ready for dictation.");
    EXPECT_FALSE(wasAskedFor("tree"));
}

TEST_F(RealPreparation, StopsADownloadWhenItIsCancelledAndGoesOnLater)
{
    models.hub.play(R"({"on": "content/s1-mini-q4_k_m.gguf", "fault": "stall", "after": 2000000, "times": 1})");
    controller.prepareModel();
    loop.turnUntil([&] { return controller.status() == "Preparing text cleanup…" && controller.progress() > 0.3; });
    controller.preparation().task()->cancel();
    loop.turnUntil([&] { return controller.phase() == DictationPhase::idle; });
    EXPECT_EQ(controller.status(), "Setup paused. Resume when you’re ready.");
    EXPECT_TRUE(fs::is_empty(models.cleanup()));
    models.hub.clear();
    EXPECT_EQ(prepare(), "Ready for dictation.");
    EXPECT_FALSE(wasAskedFor("tree"));
}

} // namespace
} // namespace Scenarios
