// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WAVBytes.h"

#include <AudioIO/WAV.h>
#include <AudioIO/WAVError.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace AudioIO {

using testing::ElementsAre;
using testing::FloatEq;
using testing::IsEmpty;

namespace {

struct Refusal {
    WAVError::Case which;
    std::string text;
};

std::optional<Refusal> refusal(const Bytes& file)
{
    try {
        WAV::decode(file);
        return std::nullopt;
    } catch (const WAVError& error) {
        return Refusal { error.which(), error.description() };
    }
}

void expectRefusal(const Bytes& file, WAVError::Case which)
{
    const auto found = refusal(file);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->which, which);
}

void expectUnsupported(const Bytes& file, const std::string& text)
{
    const auto found = refusal(file);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->which, WAVError::Case::unsupported);
    EXPECT_EQ(found->text, text);
}

Bytes formatAndData(const Format& format, const Bytes& data)
{
    return wave({ formatChunk(format), chunk("data", data) });
}

} // namespace

TEST(WAVReading, RefusesWhatIsNotRIFF)
{
    expectRefusal({}, WAVError::Case::notRIFF);
    expectRefusal(bytes("RIFF"), WAVError::Case::notRIFF);
    expectRefusal(bytes("RIFF\0\0\0\0WAV"), WAVError::Case::notRIFF);
    expectRefusal(bytes("RIFX\4\0\0\0WAVE12345678"), WAVError::Case::notRIFF);
    expectRefusal(bytes("RIFF\4\0\0\0AVI 12345678"), WAVError::Case::notRIFF);
}

TEST(WAVReading, RefusesAFileThatEndsTooSoon)
{
    expectRefusal(wave({}), WAVError::Case::truncated);
    expectRefusal(join({ wave({}), bytes("fmt \x10\0\0") }), WAVError::Case::truncated);
    expectRefusal(wave({ formatChunk({}) }), WAVError::Case::truncated); // no data
    expectRefusal(wave({ chunk("data", {}), chunk("fmt ", Bytes(15)) }), WAVError::Case::truncated);
}

TEST(WAVReading, KnowsNoRateWithoutAFormat)
{
    expectUnsupported(wave({ chunk("data", Bytes(8)) }), "sample rate 0");
    expectUnsupported(formatAndData({ .sampleRate = 0 }, Bytes(8)), "sample rate 0");
}

TEST(WAVReading, DecodesIntegers)
{
    EXPECT_THAT(WAV::decode(formatAndData({ .bits = 8 }, { 0, 128, 255 })).samples, ElementsAre(-1, 0, 127.0F / 128));
    EXPECT_THAT(WAV::decode(formatAndData({ .bits = 16 }, { 0x00, 0x80, 0xFF, 0x7F, 0, 0 })).samples,
        ElementsAre(-1, 32767.0F / 32768, 0));
    EXPECT_THAT(WAV::decode(formatAndData({ .bits = 24 }, { 0, 0, 0x80, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F })).samples,
        ElementsAre(-1, -1.0F / 8388608, 8388607.0F / 8388608));
    EXPECT_THAT(WAV::decode(formatAndData({ .bits = 32 }, { 0, 0, 0, 0x80, 0xFF, 0xFF, 0xFF, 0x7F })).samples,
        ElementsAre(-1, 1)); // the largest integer rounds up when it becomes a float
}

TEST(WAVReading, DecodesFloats)
{
    EXPECT_THAT(WAV::decode(formatAndData({ .tag = 3, .bits = 32 }, little(0x3FC00000, 4))).samples, ElementsAre(1.5F));
    EXPECT_THAT(WAV::decode(formatAndData({ .tag = 3, .bits = 64 }, little(0x3FB999999999999A, 8))).samples,
        ElementsAre(FloatEq(0.1F)));
}

TEST(WAVReading, RefusesOtherSampleFormatsByName)
{
    expectUnsupported(formatAndData({ .bits = 12 }, Bytes(8)), "PCM 12-bit");
    expectUnsupported(formatAndData({ .bits = 64 }, Bytes(8)), "PCM 64-bit");
    expectUnsupported(formatAndData({ .tag = 3, .bits = 16 }, Bytes(8)), "float 16-bit");
    expectUnsupported(formatAndData({ .tag = 6, .bits = 8 }, Bytes(8)), "format tag 6");
    expectUnsupported(formatAndData({ .bits = 4 }, Bytes(8)), "0 bits/sample");
    expectUnsupported(formatAndData({ .tag = 17, .bits = 0 }, Bytes(8)), "0 bits/sample");
}

TEST(WAVReading, TakesTheRealFormatOfAnExtensibleFile)
{
    // The sub-format begins at byte 24 of the chunk's body.
    const Format extensible { .tag = 65534, .bits = 32, .rest = join({ Bytes(8), little(3, 2) }) };
    EXPECT_THAT(WAV::decode(formatAndData(extensible, little(0x3F000000, 4))).samples, ElementsAre(0.5F));
}

TEST(WAVReading, RefusesAnExtensibleFileWithoutSubFormat)
{
    const Format tooShort { .tag = 65534, .bits = 32, .rest = Bytes(9) };
    expectUnsupported(wave({ chunk("data", {}), chunk("fmt ", formatBody(tooShort)) }), "format tag 65534");
}

TEST(WAVReading, DoesNotHeedTheFormatChunksOwnSize)
{
    // The chunk claims 16 bytes, so the first sample stands where the sub-format would: at 24 of its body.
    const Bytes file = formatAndData({ .tag = 65534, .bits = 16 }, join({ little(1, 2), little(0x4000, 2) }));
    EXPECT_THAT(WAV::decode(file).samples, ElementsAre(1.0F / 32768, 0.5F));
}

TEST(WAVReading, CutsADataChunkThatClaimsTooMuch)
{
    const Bytes file = wave({ formatChunk({}), bytes("data"), little(0xFFFFFFFF, 4), Bytes(10) });
    EXPECT_EQ(WAV::decode(file).samples.size(), 5U);
}

TEST(WAVReading, ReadsAFormatThatStandsAfterTheData)
{
    const PCM pcm = WAV::decode(wave({ chunk("data", little(0x4000, 2)), formatChunk({ .sampleRate = 22'050 }) }));
    EXPECT_EQ(pcm, (PCM { .samples = { 0.5F }, .sampleRate = 22'050, .channels = 1 }));
}

TEST(WAVReading, TakesTheLastOfSeveralDataChunks)
{
    const Bytes file = wave({ formatChunk({}), chunk("data", Bytes(8)), chunk("data", little(0x4000, 2)) });
    EXPECT_THAT(WAV::decode(file).samples, ElementsAre(0.5F));
}

TEST(WAVReading, SkipsUnknownChunksWithTheirPadding)
{
    const Bytes data = chunk("data", little(0x4000, 2));
    EXPECT_THAT(
        WAV::decode(wave({ formatChunk({}), chunk("LIST", Bytes(3)), Bytes(1), data })).samples, ElementsAre(0.5F));
    EXPECT_THAT(
        WAV::decode(wave({ formatChunk({}), data, chunk("LIST", Bytes(3)), Bytes(1) })).samples, ElementsAre(0.5F));
    EXPECT_THAT(WAV::decode(wave({ formatChunk({}), data, chunk("LIST", Bytes(3)) })).samples, ElementsAre(0.5F));
}

TEST(WAVReading, CountsNoChannelsAsOne)
{
    EXPECT_EQ(WAV::decode(formatAndData({ .channels = 0 }, Bytes(2))).channels, 1);
    EXPECT_EQ(WAV::decode(formatAndData({ .channels = 65535 }, Bytes(2))).channels, 65535);
}

TEST(WAVReading, DropsAPartialSampleButKeepsAPartialFrame)
{
    EXPECT_EQ(WAV::decode(formatAndData({ .channels = 2 }, Bytes(7))).samples.size(), 3U);
    EXPECT_THAT(WAV::decode(formatAndData({}, Bytes(1))).samples, IsEmpty());
}

TEST(WAVReading, ReadsAnEmptyDataChunk)
{
    EXPECT_EQ(WAV::decode(formatAndData({}, {})), (PCM { .samples = {}, .sampleRate = 16'000, .channels = 1 }));
}

} // namespace AudioIO
