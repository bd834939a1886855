// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "FileAudioStream.h"

#include "FakeModel.h"

#include <AudioIO/AudioIO.h>
#include <AudioIO/WAV.h>
#include <Ostrel/OstrelError.h>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

using namespace Ostrel;

namespace {

std::vector<float> tone(size_t count, double sampleRate)
{
    std::vector<float> samples(count);
    for (size_t i = 0; i < count; ++i)
        samples[i] = static_cast<float>(0.5 * std::sin(static_cast<double>(i) * 440 * 2 * M_PI / sampleRate));
    return samples;
}

std::filesystem::path toneFile(size_t frames, int sampleRate)
{
    const auto path = freshDirectory("audio") / "tone.wav";
    AudioIO::writeWAV(tone(frames, sampleRate), sampleRate, 1, path);
    return path;
}

std::vector<float> readAll(AudioStream& stream, int64_t maxFrames)
{
    std::vector<float> samples;
    for (size_t before = 1; before != samples.size();) {
        before = samples.size();
        const int64_t count = stream.read(maxFrames, samples);
        EXPECT_EQ(samples.size() - before, static_cast<size_t>(count));
    }
    return samples;
}

std::string refusal(const std::filesystem::path& path)
{
    try {
        const FileAudioStream stream(path, 16000, 10);
    } catch (const OstrelError& error) {
        EXPECT_EQ(error.which(), OstrelError::Case::invalidAudio);
        return error.description();
    }
    return "none";
}

} // namespace

TEST(FileAudioStream, DeliversAFileAtTheModelsRate)
{
    FileAudioStream stream(toneFile(16000, 16000), 16000, 10);
    EXPECT_EQ(stream.totalSamples(), 16000);
    const std::vector<float> samples = readAll(stream, 100000);
    const std::vector<float> expected = tone(16000, 16000);
    ASSERT_EQ(samples.size(), expected.size());
    for (size_t i = 0; i < samples.size(); ++i)
        ASSERT_NEAR(samples[i], expected[i], 1.0 / 32767);
}

TEST(FileAudioStream, ConvertsOnTheWay)
{
    FileAudioStream stream(toneFile(44100, 44100), 16000, 10);
    EXPECT_EQ(stream.totalSamples(), 16000);
    const std::vector<float> samples = readAll(stream, 100000);
    const std::vector<float> expected = tone(16000, 16000);
    ASSERT_NEAR(static_cast<double>(samples.size()), 16000, 2);
    for (size_t i = 100; i + 100 < samples.size(); ++i)
        ASSERT_NEAR(samples[i], expected[i], 0.01) << i;
}

TEST(FileAudioStream, GivesTheSameHoweverItIsRead)
{
    const auto path = toneFile(100'000, 44100);
    FileAudioStream whole(path, 16000, 10);
    const std::vector<float> expected = readAll(whole, 1'000'000);
    for (const double chunkSeconds : { 0.01, 0.3 })
        for (const int64_t maxFrames : { 1, 5000 }) {
            FileAudioStream stream(path, 16000, chunkSeconds);
            EXPECT_EQ(readAll(stream, maxFrames), expected);
        }
}

TEST(FileAudioStream, MayOverrunWhatWasAsked)
{
    FileAudioStream stream(toneFile(200'000, 16000), 16000, 10);
    std::vector<float> samples;
    EXPECT_EQ(stream.read(0, samples), 0);
    EXPECT_EQ(stream.read(-5, samples), 0);
    EXPECT_GT(stream.read(1, samples), 159'000);
}

TEST(FileAudioStream, EndsForEver)
{
    FileAudioStream stream(toneFile(1000, 16000), 16000, 10);
    std::vector<float> samples;
    while (stream.read(1000, samples) > 0) { }
    EXPECT_EQ(samples.size(), 1000U);
    EXPECT_EQ(stream.read(1000, samples), 0);
    EXPECT_EQ(stream.read(0, samples), 0);
}

TEST(FileAudioStream, SaysWhyAFileCannotBeRead)
{
    const auto directory = freshDirectory("bad");
    const auto absent = directory / "absent.wav";
    EXPECT_TRUE(refusal(absent).starts_with("invalid audio: " + absent.string() + ": ")) << refusal(absent);

    const auto text = directory / "text.wav";
    std::ofstream(text) << "this is no audio at all";
    EXPECT_TRUE(refusal(text).starts_with("invalid audio: " + text.string() + ": ")) << refusal(text);

    const auto empty = directory / "empty.wav";
    AudioIO::writeWAV({}, 16000, 1, empty);
    EXPECT_EQ(refusal(empty), "invalid audio: " + empty.string() + " decoded to no audio");
}
