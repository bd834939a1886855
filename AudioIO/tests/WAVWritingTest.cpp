// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Files.h"

#include <AudioIO/AudioIO.h>
#include <AudioIO/AudioIOError.h>
#include <AudioIO/WAV.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <system_error>

namespace AudioIO {

using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

using Samples = std::vector<float>;

int16_t written(float sample)
{
    const auto file = WAV::encode(Samples { sample }, 16'000, 1);
    return static_cast<int16_t>(file.at(44) | file.at(45) << 8);
}

} // namespace

TEST(WAVWriting, BeginsWithACanonicalHeader)
{
    const auto file = WAV::encode(Samples { 0, 0, 0, 0 }, 44'100, 2);
    const std::vector<uint8_t> header { 'R', 'I', 'F', 'F', 44, 0, 0, 0, 'W', 'A', 'V', 'E', 'f', 'm', 't', ' ', 16, 0,
        0, 0, 1, 0, 2, 0, 0x44, 0xAC, 0, 0, 0x10, 0xB1, 2, 0, 4, 0, 16, 0, 'd', 'a', 't', 'a', 8, 0, 0, 0 };
    EXPECT_EQ(file.size(), 52U);
    EXPECT_THAT(std::vector(file.begin(), file.begin() + 44), ElementsAreArray(header));
}

TEST(WAVWriting, WritesAValidFileWithoutSamples)
{
    const auto file = WAV::encode({}, 16'000, 1);
    EXPECT_EQ(file.size(), 44U);
    EXPECT_EQ(WAV::decode(file), (PCM { .samples = {}, .sampleRate = 16'000, .channels = 1 }));
}

TEST(WAVWriting, ClampsToFullScale)
{
    EXPECT_EQ(written(1), 32767);
    EXPECT_EQ(written(-1), -32767);
    EXPECT_EQ(written(1.5F), 32767);
    EXPECT_EQ(written(-1.5F), -32767);
    EXPECT_EQ(written(std::numeric_limits<float>::infinity()), 32767);
    EXPECT_EQ(written(-std::numeric_limits<float>::infinity()), -32767);
    EXPECT_EQ(written(std::numeric_limits<float>::quiet_NaN()), 32767);
    EXPECT_EQ(written(-std::numeric_limits<float>::quiet_NaN()), 32767);
}

TEST(WAVWriting, RoundsHalvesAwayFromZero)
{
    EXPECT_EQ(written(0.5F), 16384); // 16383.5
    EXPECT_EQ(written(-0.5F), -16384);
    EXPECT_EQ(written(0.0F), 0);
}

TEST(WAVWriting, KeepsTheLowBytesOfWideNumbers)
{
    const auto file = WAV::encode({}, 0x1'0000'0001, 0x1'0002);
    EXPECT_THAT(std::vector(file.begin() + 22, file.begin() + 34), ElementsAre(2, 0, 1, 0, 0, 0, 4, 0, 2, 0, 4, 0));
}

TEST(WAVWritingDeathTest, EndsTheProcessWhenSizesOverflow)
{
    EXPECT_DEATH(WAV::encode({}, std::numeric_limits<int64_t>::max(), 2), "overflows");
    EXPECT_DEATH(WAV::encode({}, 1, std::numeric_limits<int64_t>::max()), "overflows");
}

TEST(WAVWriting, IsReadBackSlightlyQuieter)
{
    const PCM pcm = WAV::decode(encodeWAV(Samples { 1, -1, 0.25F, 0 }, 48'000, 2));
    EXPECT_THAT(pcm.samples, ElementsAre(32767.0F / 32768, -32767.0F / 32768, 8192.0F / 32768, 0));
    EXPECT_EQ(pcm.sampleRate, 48'000);
    EXPECT_EQ(pcm.channels, 2);
}

TEST(WAVFileWriting, WritesTheBytesOfTheEncoder)
{
    const TemporaryFolder folder;
    Samples samples(65536 * 2 + 3); // two whole blocks and a rest
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<float>(i % 200) / 100 - 1;
    for (const size_t count : { size_t { 0 }, size_t { 1 }, size_t { 65536 }, samples.size() }) {
        const auto part = std::span(samples).first(count);
        writeWAV(part, 16'000, 1, folder.path() / "a.wav");
        EXPECT_EQ(contents(folder.path() / "a.wav"), WAV::encode(part, 16'000, 1));
    }
}

TEST(WAVFileWriting, ReplacesALongerFile)
{
    const TemporaryFolder folder;
    const auto path = folder.write("a.wav", std::vector<uint8_t>(1000, 7));
    writeWAV(Samples { 0.5F }, 16'000, 1, path);
    EXPECT_EQ(contents(path).size(), 46U);
}

TEST(WAVFileWriting, SaysWhatItCannotCreate)
{
    const TemporaryFolder folder;
    const auto path = folder.path() / "missing" / "a.wav";
    try {
        writeWAV(Samples { 0.5F }, 16'000, 1, path);
        FAIL() << "created a file in a missing folder";
    } catch (const AudioIOError& error) {
        EXPECT_EQ(error.which(), AudioIOError::Case::decodeFailed);
        EXPECT_EQ(error.description(), "cannot create " + path.string());
    }
}

TEST(WAVFileWriting, PassesAFailedWriteOn)
{
    try {
        writeWAV(Samples { 0.5F }, 16'000, 1, "/dev/full");
        FAIL() << "wrote to a full device";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_space_on_device);
    }
}

} // namespace AudioIO
