// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WAVWriting.h"

#include <AudioIO/WAV.h>
#include <PlatformSupport/Precondition.h>

#include <cmath>
#include <string_view>

namespace AudioIO::WAV {

namespace {

constexpr int64_t integerPCM = 1;
constexpr int64_t bitsPerSample = 8 * bytesPerSample;
constexpr int64_t formatChunkSize = 16;

// Not 32768: full scale then has the same size on both sides.
constexpr float writtenFullScale = 32767.0F;

int64_t checkedProduct(int64_t a, int64_t b)
{
    int64_t product = 0;
    PlatformSupport::precondition(!__builtin_mul_overflow(a, b, &product), "size of a WAV file overflows");
    return product;
}

int64_t checkedSum(int64_t a, int64_t b)
{
    int64_t sum = 0;
    PlatformSupport::precondition(!__builtin_add_overflow(a, b, &sum), "size of a WAV file overflows");
    return sum;
}

// Fills an array from its start with little-endian numbers and tags.
class HeaderWriter {
public:
    void tag(std::string_view text)
    {
        for (const char c : text)
            bytes_[size_++] = static_cast<uint8_t>(c);
    }

    // The low `width` bytes.
    void number(int64_t value, size_t width)
    {
        for (size_t i = 0; i < width; ++i)
            bytes_[size_++] = static_cast<uint8_t>(static_cast<uint64_t>(value) >> (8 * i));
    }

    const std::array<uint8_t, headerSize>& bytes() const { return bytes_; }

private:
    std::array<uint8_t, headerSize> bytes_ {};
    size_t size_ = 0;
};

int16_t toInteger(float sample)
{
    // In this order a NaN, for which no comparison holds, becomes full scale.
    const float belowTop = sample < 1.0F ? sample : 1.0F;
    const float clamped = belowTop > -1.0F ? belowTop : -1.0F;
    return static_cast<int16_t>(std::round(clamped * writtenFullScale));
}

} // namespace

std::array<uint8_t, headerSize> header(size_t sampleCount, int64_t sampleRate, int64_t channels)
{
    const int64_t blockAlign = checkedProduct(channels, bytesPerSample);
    const int64_t dataSize = checkedProduct(static_cast<int64_t>(sampleCount), bytesPerSample);

    HeaderWriter writer;
    writer.tag("RIFF");
    writer.number(checkedSum(headerSize - 8, dataSize), 4);
    writer.tag("WAVE");
    writer.tag("fmt ");
    writer.number(formatChunkSize, 4);
    writer.number(integerPCM, 2);
    writer.number(channels, 2);
    writer.number(sampleRate, 4);
    writer.number(checkedProduct(sampleRate, blockAlign), 4);
    writer.number(blockAlign, 2);
    writer.number(bitsPerSample, 2);
    writer.tag("data");
    writer.number(dataSize, 4);
    return writer.bytes();
}

void encodeSamples(std::span<const float> samples, std::span<uint8_t> bytes)
{
    PlatformSupport::precondition(bytes.size() / bytesPerSample == samples.size(), "WAV block of the wrong size");
    for (size_t i = 0; i < samples.size(); ++i) {
        const auto bits = static_cast<uint16_t>(toInteger(samples[i]));
        bytes[2 * i] = static_cast<uint8_t>(bits);
        bytes[2 * i + 1] = static_cast<uint8_t>(bits >> 8);
    }
}

std::vector<uint8_t> encode(std::span<const float> samples, int64_t sampleRate, int64_t channels)
{
    const auto head = header(samples.size(), sampleRate, channels);
    std::vector<uint8_t> file(headerSize + samples.size() * bytesPerSample);
    std::copy(head.begin(), head.end(), file.begin());
    encodeSamples(samples, std::span(file).subspan(headerSize));
    return file;
}

} // namespace AudioIO::WAV
