// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FakeModel.h"
#include "TestConfiguration.h"

#include <AudioIO/AudioIO.h>
#include <Ostrel/Ostrel.h>
#include <Ostrel/OstrelError.h>
#include <Ostrel/OstrelModel.h>
#include <PlatformSupport/BlockingValue.h>
#include <PlatformSupport/URLError.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <thread>

using namespace Ostrel;
using Engine = ::Ostrel::Ostrel;

namespace {

Assets hearingAssets()
{
    Configuration configuration = testConfiguration();
    configuration.vocabSize = configuration.blankIdx = 10;
    Assets assets = fakeAssets(configuration, 2);
    makeHearing(assets);
    return assets;
}

// Two words of 1.6 s each at the engine's 100 Hz, the second up to the end.
std::vector<float> twoWords()
{
    std::vector<float> samples(160, 1.0F);
    samples.resize(240, 0.1F);
    samples.resize(400, 2.0F);
    return samples;
}

std::string refusal(const std::function<void()>& operation)
{
    try {
        operation();
    } catch (const OstrelError& error) {
        return error.description();
    }
    return "none";
}

class OstrelTest : public testing::Test {
protected:
    ProgressCallback noting()
    {
        return [this](Progress progress) { fractions.push_back(progress.fractionCompleted); };
    }

    Assets assets = hearingAssets();
    FakeStage& mel = dynamic_cast<FakeStage&>(*assets.mel);
    Engine engine { std::move(assets) };
    std::vector<double> fractions;
};

} // namespace

TEST_F(OstrelTest, TurnsSamplesIntoWords)
{
    const Result result = engine.transcribe(twoWords(), noting());
    EXPECT_EQ(engine.sampleRate(), 100);
    EXPECT_EQ(result.text, "w1 w2");
    EXPECT_EQ(result.words.size(), 2U);
    EXPECT_EQ(result.duration, 4.0);
    EXPECT_GT(result.processingTime, 0);
    EXPECT_EQ(fractions, (std::vector<double> { 1, 1 }));
}

TEST_F(OstrelTest, RefusesNoSamplesBeforeAnyStageRuns)
{
    EXPECT_EQ(refusal([&] { engine.transcribe(std::vector<float> {}); }), "invalid audio: no samples");
    EXPECT_EQ(refusal([&] { engine.transcribe(std::vector<float> { 1, 2 }, 1e9); }), "invalid audio: no samples");
    EXPECT_EQ(mel.calls, 0);
}

TEST_F(OstrelTest, ResamplesToTheModelsRate)
{
    std::vector<float> samples;
    for (const float sample : twoWords())
        samples.insert(samples.end(), 3, sample);
    const Result result = engine.transcribe(samples, 300);
    EXPECT_EQ(result.text, "w1 w2");
    EXPECT_EQ(result.duration, 4.0);
}

TEST_F(OstrelTest, TakesASingleSampleAsItIs)
{
    EXPECT_EQ(engine.transcribe(std::vector<float> { 0.25F }, 50).duration, 0.01);
}

TEST_F(OstrelTest, TakesSilenceForNoError)
{
    const Result result = engine.transcribe(std::vector<float>(3000), noting());
    EXPECT_EQ(result.text, "");
    EXPECT_TRUE(result.words.empty());
    EXPECT_EQ(result.duration, 30.0);
}

TEST_F(OstrelTest, CutsWordsAtTheAudiosEnd)
{
    ArrayAudioStream stream(twoWords());
    const Result result = engine.transcribe(stream, 1.0);
    EXPECT_EQ(result.text, "w1 w2"); // times change, never text
    EXPECT_EQ(result.words[0].end, 1.0);
    EXPECT_EQ(result.words[1], (Word { "w2", 1.0, 1.0 }));
}

TEST_F(OstrelTest, EndsWithFullProgressWhereNothingWasReported)
{
    class Lengthless final : public AudioStream {
    public:
        std::optional<int64_t> totalSamples() const override { return {}; }
        int64_t read(int64_t maxFrames, std::vector<float>& samples) override
        {
            return words_.read(maxFrames, samples);
        }

    private:
        ArrayAudioStream words_ { twoWords() };
    } stream;
    EXPECT_EQ(engine.transcribe(stream, 0, noting()).text, "w1 w2");
    EXPECT_EQ(fractions, (std::vector<double> { 0, 1 }));
}

TEST_F(OstrelTest, RefusesAStreamOfNothing)
{
    ArrayAudioStream stream({});
    EXPECT_EQ(refusal([&] { engine.transcribe(stream, 0, noting()); }), "invalid audio: no samples");
    EXPECT_EQ(fractions, (std::vector<double> { 0, 1 }));
}

TEST_F(OstrelTest, ReadsFiles)
{
    const auto path = freshDirectory("audio") / "silence.wav";
    AudioIO::writeWAV(std::vector<float>(44100), 44100, 1, path);
    EXPECT_EQ(engine.transcribe(path).duration, 1.0);
    EXPECT_TRUE(refusal([&] { engine.transcribe(path.parent_path() / "absent"); }).starts_with("invalid audio: "));
}

TEST_F(OstrelTest, StaysUsableAfterAFailure)
{
    const auto hear = std::exchange(mel.onPredict, [](FakeStage&) { throw std::runtime_error("broken"); });
    EXPECT_THROW(engine.transcribe(twoWords()), std::runtime_error);
    mel.onPredict = hear;
    EXPECT_EQ(engine.transcribe(twoWords()).text, "w1 w2");
}

TEST_F(OstrelTest, RunsOneTranscriptionAtATime)
{
    std::atomic<int> inside = 0;
    std::atomic<int> mostInside = 0;
    const auto hear = mel.onPredict;
    mel.onPredict = [&](FakeStage& stage) {
        mostInside = std::max(mostInside.load(), ++inside);
        hear(stage);
        --inside;
    };
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] { EXPECT_EQ(engine.transcribe(twoWords()).text, "w1 w2"); });
    threads.clear();
    EXPECT_EQ(mostInside, 1);
}

TEST(OstrelLoading, SaysWhenTheModelIsNotThere)
{
    const std::string directory = freshDirectory("nothing");
    const ModelStore::ModelPlace place { .directory = directory, .cacheRoot = directory };
    EXPECT_FALSE(Engine::isDownloaded(place));
    ::setenv("TRW_HUB_ENDPOINT", "http://127.0.0.1:1", 1); // where nobody listens
    if (OstrelModel().supports()) {
        EXPECT_THROW(Engine { place }, PlatformSupport::URLError);
    }
    EXPECT_THROW(PlatformSupport::blockingValue([&] { return Engine::download(place); }), PlatformSupport::URLError);
    ::unsetenv("TRW_HUB_ENDPOINT");
    EXPECT_THROW(Engine { std::filesystem::path(directory) }, std::filesystem::filesystem_error);
}

TEST(OstrelLoading, GivesTheDirectoryOfTheUsersCopy)
{
    const std::string directory = freshDirectory("placed");
    const ModelStore::ModelDistribution distribution = OstrelModel().distribution();
    for (const std::string& file : *distribution.currentFiles())
        std::filesystem::create_directories(directory + "/" + file);
    const ModelStore::ModelPlace place { .directory = directory, .cacheRoot = {} };
    EXPECT_TRUE(Engine::isDownloaded(place));
    EXPECT_EQ(PlatformSupport::blockingValue([&] { return Engine::download(place); }), directory);
}

TEST(OstrelModel, DeclaresItself)
{
    const OstrelModel model;
    EXPECT_EQ(model.repo(), "tarnwick/ostrel");
    EXPECT_EQ(model.product(), "Ostrel");
    EXPECT_EQ(model.revision(), "v0.1.0");
    EXPECT_EQ(model.sdkVersion(), "3.1.0");
    EXPECT_EQ(model.currentArtifact(), "encoder.mlmodelc");
    EXPECT_EQ(model.files().size(), 1U);
    EXPECT_EQ(model.files().at(ModelStore::ModelPlatform::apple).front(), "encoder.mlmodelc/");
    EXPECT_EQ(model.osFloor(), ModelCatalog::OSFloor::packageFloor());
    EXPECT_EQ(std::ranges::adjacent_find(Engine::supportedLanguages, std::ranges::greater_equal()),
        Engine::supportedLanguages.end());
}
