// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FakeModel.h"
#include "TestConfiguration.h"

#include <MLProgram/MLModelError.h>
#include <Ostrel/OstrelError.h>
#include <Ostrel/Pipeline.h>

#include <gtest/gtest.h>

#include <cmath>

using namespace Ostrel;

namespace {

constexpr size_t wordLength = 160; // samples: 2 encoder frames
constexpr size_t pauseLength = 80;
constexpr int64_t wordCount = 60;

Configuration manyWords()
{
    Configuration configuration = testConfiguration();
    configuration.vocabSize = configuration.blankIdx = wordCount + 1;
    return configuration;
}

// The words 1, 2, ... one after the other, for the fake stages' ears. A pause is quietest in its middle.
std::vector<float> speech(int64_t words = wordCount)
{
    std::vector<float> samples;
    for (int64_t word = 1; word <= words; ++word) {
        samples.insert(samples.end(), wordLength, static_cast<float>(word));
        for (size_t i = 0; i < pauseLength; ++i)
            samples.push_back(0.1F + 0.005F * std::abs(static_cast<float>(i) - 39.5F));
    }
    return samples;
}

std::string textOf(int64_t words)
{
    std::string text;
    for (int64_t word = 1; word <= words; ++word)
        text += (word > 1 ? " w" : "w") + std::to_string(word);
    return text;
}

// Gives a stream's samples in pieces of a size of its own, whatever is asked.
class PiecewiseStream final : public AudioStream {
public:
    PiecewiseStream(std::vector<float> samples, int64_t piece)
        : stream_(std::move(samples))
        , piece_(piece)
    {
    }

    std::optional<int64_t> totalSamples() const override { return stream_.totalSamples(); }
    int64_t read(int64_t, std::vector<float>& samples) override { return stream_.read(piece_, samples); }

private:
    ArrayAudioStream stream_;
    int64_t piece_;
};

Pipeline hearingPipeline(const Tunables& tunables, int64_t lanes = 3)
{
    Assets assets = fakeAssets(manyWords(), lanes);
    makeHearing(assets);
    return Pipeline(std::move(assets), tunables);
}

Transcript transcribe(AudioStream& stream, const Tunables& tunables, int64_t lanes = 3)
{
    return hearingPipeline(tunables, lanes).run(stream, [](double) {});
}

Transcript transcribe(std::vector<float> samples, const Tunables& tunables = {}, int64_t lanes = 3)
{
    ArrayAudioStream stream(std::move(samples));
    return transcribe(stream, tunables, lanes);
}

} // namespace

TEST(Pipeline, TurnsAShortRecordingIntoTimedWords)
{
    const Transcript transcript = transcribe(speech(3));
    EXPECT_EQ(transcript.text, "w1 w2 w3");
    ASSERT_EQ(transcript.words.size(), 3U);
    EXPECT_NEAR(transcript.words[1].start, 2.4, 0.9);
    EXPECT_EQ(transcribe({}).text, "");
}

TEST(Pipeline, HearsEachWordOfALongRecordingOnce)
{
    EXPECT_EQ(transcribe(speech()).text, textOf(wordCount));
}

TEST(Pipeline, MergesWhatWindowsHeardTwice)
{
    const Tunables overlapping { .boundarySearch = 12, .batchWindows = 64 };
    EXPECT_EQ(transcribe(speech(), overlapping).text, textOf(wordCount));
}

TEST(Pipeline, GivesTheSameWordsInBatchesOfAnySize)
{
    const std::vector<Word> expected = transcribe(speech()).words;
    for (const int64_t batchWindows : { 1, 2, 3, 64 })
        for (const int64_t lanes : { 1, 2, 8 })
            EXPECT_EQ(
                transcribe(speech(), { .boundarySearch = 3, .batchWindows = batchWindows }, lanes).words, expected);
}

TEST(Pipeline, GivesTheSameWordsHoweverTheStreamIsRead)
{
    const std::vector<Word> expected = transcribe(speech()).words;
    for (const int64_t piece : { 1, 7, 399, 4000, 4001, 1'000'000 }) {
        PiecewiseStream stream(speech(), piece);
        EXPECT_EQ(transcribe(stream, { .boundarySearch = 3, .batchWindows = 2 }).words, expected) << piece;
    }
}

TEST(Pipeline, GivesTheSameWordsTwice)
{
    Pipeline pipeline = hearingPipeline({});
    ArrayAudioStream first(speech());
    ArrayAudioStream second(speech());
    const auto ignore = [](double) {};
    EXPECT_EQ(pipeline.run(first, ignore).words, pipeline.run(second, ignore).words);
}

TEST(Pipeline, CanBeUsedAgainAfterAFailure)
{
    class BrokenStream final : public AudioStream {
    public:
        std::optional<int64_t> totalSamples() const override { return {}; }
        int64_t read(int64_t, std::vector<float>&) override { throw std::runtime_error("unplugged"); }
    } broken;
    Pipeline pipeline = hearingPipeline({});
    const auto ignore = [](double) {};
    EXPECT_THROW(pipeline.run(broken, ignore), std::runtime_error);
    ArrayAudioStream stream(speech(3));
    EXPECT_EQ(pipeline.run(stream, ignore).text, "w1 w2 w3");
}

TEST(Pipeline, RefusesStagesThatDoNotFitTheConfiguration)
{
    Assets assets = fakeAssets(testConfiguration(), 2);
    assets.configuration.encFrames = 51;
    EXPECT_THROW(Pipeline { std::move(assets) }, MLProgram::MLModelError);
}

TEST(Pipeline, RefusesAGeometryThatCannotBeComputedWith)
{
    for (int64_t Configuration::*const field : { &Configuration::nSamples, &Configuration::hopLength,
             &Configuration::nRows, &Configuration::predLayers, &Configuration::decodeWidth, &Configuration::nMels }) {
        Assets assets = fakeAssets(testConfiguration(), 2);
        assets.configuration.*field = int64_t { 1 } << 62;
        EXPECT_THROW(Pipeline { std::move(assets) }, OstrelError);
    }
}

TEST(Pipeline, SurvivesDurationsOfAnyValue)
{
    Configuration configuration = manyWords();
    configuration.durations = { INT64_MIN, -1, INT64_MAX };
    Assets assets = fakeAssets(configuration, 2);
    makeHearing(assets);
    ArrayAudioStream stream(speech(4));
    EXPECT_EQ(Pipeline(std::move(assets)).run(stream, [](double) {}).text, textOf(4));
}
