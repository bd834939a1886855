// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Files.h"
#include "Tone.h"

#include <AudioIO/AudioFile.h>
#include <AudioIO/AudioIO.h>

#include <gtest/gtest.h>

#include <string>

namespace AudioIO {

namespace {

// What a file of tests/files holds: each is a sine of 440 Hz at half of full scale.
struct Sample {
    std::string name;
    int sampleRate;
    int channels;
    int64_t frames; // what reading it gives
    int64_t statedFrames; // what is known when it is opened
};

void PrintTo(const Sample& sample, std::ostream* out)
{
    *out << sample.name;
}

std::vector<float> readAll(AudioFile& file, int64_t framesAtOnce)
{
    std::vector<float> all;
    std::vector<float> piece;
    while (const int64_t frames = file.read(framesAtOnce, piece)) {
        EXPECT_EQ(static_cast<int64_t>(piece.size()), frames * file.channels());
        all.insert(all.end(), piece.begin(), piece.end());
    }
    return all;
}

class SampleFile : public testing::TestWithParam<Sample> {
protected:
    AudioFile open() const { return AudioFile("tests/files/" + GetParam().name); }
};

TEST_P(SampleFile, StatesRateChannelsAndLengthWhenOpened)
{
    const AudioFile file = open();
    EXPECT_EQ(file.sampleRate(), GetParam().sampleRate);
    EXPECT_EQ(file.channels(), GetParam().channels);
    EXPECT_EQ(file.length(), GetParam().statedFrames);
    EXPECT_EQ(file.framePosition(), 0);
}

TEST_P(SampleFile, GivesAllItsFrames)
{
    AudioFile file = open();
    const auto samples = readAll(file, 1000);
    EXPECT_EQ(static_cast<int64_t>(samples.size()), GetParam().frames * GetParam().channels);
    EXPECT_EQ(file.framePosition(), GetParam().frames);
    EXPECT_EQ(file.length(), GetParam().frames);
}

TEST_P(SampleFile, HoldsTheToneInEveryChannel)
{
    constexpr int bassOf51 = 3; // coders filter it
    AudioFile file = open();
    const auto samples = readAll(file, 1000);
    for (int i = 0; i < file.channels(); ++i) {
        if (i == bassOf51)
            continue;
        const auto heard = channel(samples, file.channels(), i);
        const double loudness = levelAt(toneFrequency, file.sampleRate(), middleHalf(heard));
        EXPECT_NEAR(loudness, toneLevel, 0.03) << "channel " << i;
        EXPECT_NEAR(level(middleHalf(heard)), loudness, 0.03) << "something else is heard in channel " << i;
    }
}

TEST_P(SampleFile, GivesTheSameInPiecesOfAnySize)
{
    AudioFile whole = open();
    const auto expected = readAll(whole, std::numeric_limits<int64_t>::max());
    for (const int64_t size : { 1, 7, 1024, 17'639 }) {
        AudioFile file = open();
        EXPECT_EQ(readAll(file, size), expected) << size << " frames at once";
    }
}

TEST_P(SampleFile, KnowsAtAnyTimeWhetherThereIsMore)
{
    AudioFile file = open();
    std::vector<float> piece;
    while (file.framePosition() < file.length())
        ASSERT_GT(file.read(333, piece), 0);
    EXPECT_EQ(file.framePosition(), GetParam().frames);
    EXPECT_EQ(file.read(333, piece), 0);
    EXPECT_TRUE(piece.empty());
    EXPECT_EQ(file.length(), GetParam().frames);
}

INSTANTIATE_TEST_SUITE_P(Waves, SampleFile,
    testing::Values(Sample { "8-bit.wav", 8'000, 1, 3200, 3200 }, Sample { "16-bit.wav", 8'000, 1, 3200, 3200 },
        Sample { "24-bit.wav", 8'000, 1, 3200, 3200 }, Sample { "32-bit.wav", 8'000, 1, 3200, 3200 },
        Sample { "float.wav", 8'000, 1, 3200, 3200 }, Sample { "double.wav", 8'000, 1, 3200, 3200 },
        Sample { "a-law.wav", 8'000, 1, 3200, 3200 }, Sample { "mu-law.wav", 8'000, 1, 3200, 3200 },
        Sample { "rf64.wav", 8'000, 1, 3200, 3200 }, Sample { "wave64.w64", 8'000, 1, 3200, 3200 },
        Sample { "stereo.wav", 8'000, 2, 3200, 3200 }, Sample { "six-channels-extensible.wav", 16'000, 6, 1600, 1600 },
        Sample { "studio-rate.wav", 192'000, 1, 9600, 9600 }, Sample { "core-audio.caf", 8'000, 1, 3200, 3200 },
        Sample { "big-endian.aiff", 8'000, 1, 3200, 3200 }));

INSTANTIATE_TEST_SUITE_P(Lossless, SampleFile,
    testing::Values(Sample { "lossless.flac", 44'100, 2, 17640, 17640 },
        Sample { "lossless-in-ogg.oga", 44'100, 1, 17640, 17640 },
        Sample { "apple-lossless.m4a", 44'100, 1, 17640, 17640 }));

// What the encoder put around the audio is left out.
INSTANTIATE_TEST_SUITE_P(PaddingStated, SampleFile,
    testing::Values(Sample { "layer-3.mp3", 44'100, 2, 17640, 17640 },
        Sample { "advanced.m4a", 44'100, 1, 17640, 17640 }, Sample { "video.mp4", 44'100, 1, 17640, 17640 },
        Sample { "opus.opus", 48'000, 1, 19200, 19200 },
        Sample { "opus-without-duration.webm", 48'000, 1, 19200, 19200 }));

// The file does not say how much of its audio is padding, so that too is heard.
INSTANTIATE_TEST_SUITE_P(PaddingUnknown, SampleFile,
    testing::Values(Sample { "layer-3-without-header.mp3", 22'050, 1, 10368, 10368 },
        Sample { "advanced-raw.aac", 44'100, 1, 19456, 19456 },
        Sample { "advanced-fragmented.mp4", 44'100, 1, 18664, 18664 },
        Sample { "surround.ac3", 48'000, 6, 19968, 19968 }));

// Containers that count in milliseconds, or not at all: the length is put right at the end.
INSTANTIATE_TEST_SUITE_P(LengthEstimated, SampleFile,
    testing::Values(Sample { "advanced.mkv", 44'100, 1, 19456, 18654 }, Sample { "video.mkv", 44'100, 1, 19456, 18654 },
        Sample { "advanced.ts", 44'100, 1, 19456, 17408 }, Sample { "opus.webm", 48'000, 2, 19200, 19272 },
        Sample { "vorbis.ogg", 44'100, 1, 17512, 17640 }, Sample { "vorbis.webm", 44'100, 1, 17984, 17772 },
        Sample { "windows-media.wma", 44'100, 1, 16384, 18390 }));

} // namespace

TEST(AudioFile, GivesTheVerySamplesWhereNothingWasLost)
{
    for (const std::string name : { "8-bit.wav", "16-bit.wav", "24-bit.wav", "32-bit.wav", "float.wav", "double.wav",
             "rf64.wav", "wave64.w64", "stereo.wav", "six-channels-extensible.wav", "studio-rate.wav", "core-audio.caf",
             "big-endian.aiff", "lossless.flac", "lossless-in-ogg.oga", "apple-lossless.m4a" }) {
        AudioFile file("tests/files/" + name);
        const auto samples = readAll(file, 1000);
        const auto expected = tone(file.sampleRate(), file.channels(), static_cast<size_t>(file.framePosition()));
        const double step = name == "8-bit.wav" ? 0x1p-7 : 0x1p-15;
        for (size_t i = 0; i < samples.size(); ++i)
            ASSERT_NEAR(samples[i], expected[i], step) << name << " at " << i;
    }
}

TEST(AudioFile, ReadsNothingWhenAskedForNothing)
{
    AudioFile file("tests/files/16-bit.wav");
    std::vector<float> piece { 1, 2, 3 };
    EXPECT_EQ(file.read(0, piece), 0);
    EXPECT_TRUE(piece.empty());
    EXPECT_EQ(file.read(-5, piece), 0);
    EXPECT_EQ(file.framePosition(), 0);
    EXPECT_EQ(file.read(5, piece), 5);
    EXPECT_EQ(file.framePosition(), 5);
    EXPECT_EQ(file.length(), 3200);
}

TEST(AudioFile, HasNoLengthWithoutFrames)
{
    const TemporaryFolder folder;
    writeWAV({}, 22'050, 2, folder.path() / "empty.wav");
    AudioFile file(folder.path() / "empty.wav");
    EXPECT_EQ(file.length(), 0);
    EXPECT_EQ(file.sampleRate(), 22'050);
    EXPECT_EQ(file.channels(), 2);
    std::vector<float> piece;
    EXPECT_EQ(file.read(100, piece), 0);
}

TEST(AudioFile, ReadsASingleFrame)
{
    const TemporaryFolder folder;
    const std::vector<float> samples { 0.25F, -0.5F };
    writeWAV(samples, 16'000, 2, folder.path() / "one.wav");
    AudioFile file(folder.path() / "one.wav");
    EXPECT_EQ(file.length(), 1);
    EXPECT_EQ(readAll(file, 10), (std::vector { 8192.0F / 32768, -16384.0F / 32768 }));
}

TEST(AudioFile, ReadsManyChannels)
{
    const TemporaryFolder folder;
    constexpr int channels = 24;
    std::vector<float> samples(100UL * channels);
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<float>(i % channels) / 32;
    writeWAV(samples, 16'000, channels, folder.path() / "many.wav");
    AudioFile file(folder.path() / "many.wav");
    ASSERT_EQ(file.channels(), channels);
    const auto heard = readAll(file, 30);
    ASSERT_EQ(heard.size(), samples.size());
    for (size_t i = 0; i < heard.size(); ++i)
        ASSERT_NEAR(heard[i], samples[i], 0x1p-14) << i;
}

TEST(AudioFile, GoesByWhatAFileHoldsAndNotByItsName)
{
    const TemporaryFolder folder;
    const auto disguised = folder.write("not really.mp3", contents("tests/files/lossless.flac"));
    EXPECT_EQ(AudioFile(disguised).length(), 17640);
}

TEST(AudioFile, KeepsReadingAFileThatWasRemoved)
{
    const TemporaryFolder folder;
    const auto path = folder.write("a.flac", contents("tests/files/lossless.flac"));
    AudioFile file(path);
    std::filesystem::remove(path);
    AudioFile moved = std::move(file);
    EXPECT_EQ(readAll(moved, 1000).size(), 2U * 17640);
}

} // namespace AudioIO
