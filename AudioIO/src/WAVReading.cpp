// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <AudioIO/WAV.h>
#include <AudioIO/WAVError.h>

#include <algorithm>
#include <bit>
#include <optional>
#include <string_view>

namespace AudioIO::WAV {

namespace {

using Bytes = std::span<const uint8_t>;

constexpr size_t riffHeadSize = 12; // "RIFF", size, "WAVE"
constexpr size_t chunkHeadSize = 8; // tag, size
constexpr size_t smallestFile = riffHeadSize + chunkHeadSize;

constexpr unsigned integerPCM = 1;
constexpr unsigned floatPCM = 3;
constexpr unsigned extensible = 65534; // the real tag then begins the sub-format's identifier

// Places in the body of a "fmt " chunk.
constexpr size_t formatBodySize = 16;
constexpr size_t subFormatAt = 24;

struct Layout {
    unsigned formatTag = integerPCM;
    unsigned bits = 16;
    int channels = 1;
    uint32_t sampleRate = 0;
    std::optional<Bytes> data;
};

// An unsigned little-endian number from the first sizeof(Number) bytes.
template <typename Number> Number number(const uint8_t* bytes)
{
    Number value = 0;
    for (size_t i = 0; i < sizeof(Number); ++i)
        value |= static_cast<Number>(static_cast<Number>(bytes[i]) << (8 * i));
    return value;
}

bool hasTag(Bytes file, size_t at, std::string_view tag)
{
    return file.size() >= at + tag.size() && std::equal(tag.begin(), tag.end(), file.begin() + static_cast<long>(at));
}

void readFormat(Bytes body, Layout& layout)
{
    if (body.size() < formatBodySize)
        throw WAVError::truncated();
    layout.formatTag = number<uint16_t>(&body[0]);
    layout.channels = std::max<int>(number<uint16_t>(&body[2]), 1);
    layout.sampleRate = number<uint32_t>(&body[4]);
    layout.bits = number<uint16_t>(&body[14]);
    if (layout.formatTag == extensible && body.size() >= subFormatAt + 2)
        layout.formatTag = number<uint16_t>(&body[subFormatAt]);
}

// Walks the chunks to the file's end; a later chunk replaces an earlier one of its kind.
Layout readLayout(Bytes file)
{
    Layout layout;
    size_t head = riffHeadSize;
    while (head + chunkHeadSize <= file.size()) {
        const size_t size = number<uint32_t>(&file[head + 4]);
        const Bytes body = file.subspan(head + chunkHeadSize);
        if (hasTag(file, head, "data"))
            layout.data = body.first(std::min(size, body.size()));
        else if (hasTag(file, head, "fmt "))
            readFormat(body, layout);
        head += chunkHeadSize + size + size % 2;
    }
    return layout;
}

float fromUnsigned8(const uint8_t* bytes)
{
    return static_cast<float>(*bytes - 128) * 0x1p-7F;
}

float fromInteger16(const uint8_t* bytes)
{
    return static_cast<float>(static_cast<int16_t>(number<uint16_t>(bytes))) * 0x1p-15F;
}

float fromInteger24(const uint8_t* bytes)
{
    const uint32_t inHighBytes = uint32_t { bytes[0] } << 8 | uint32_t { bytes[1] } << 16 | uint32_t { bytes[2] } << 24;
    return static_cast<float>(static_cast<int32_t>(inHighBytes) >> 8) * 0x1p-23F;
}

float fromInteger32(const uint8_t* bytes)
{
    return static_cast<float>(static_cast<int32_t>(number<uint32_t>(bytes))) * 0x1p-31F;
}

float fromFloat32(const uint8_t* bytes)
{
    return std::bit_cast<float>(number<uint32_t>(bytes));
}

float fromFloat64(const uint8_t* bytes)
{
    return static_cast<float>(std::bit_cast<double>(number<uint64_t>(bytes)));
}

using SampleReader = float (*)(const uint8_t*);

SampleReader readerOfIntegers(unsigned bits)
{
    switch (bits) {
    case 8:
        return fromUnsigned8;
    case 16:
        return fromInteger16;
    case 24:
        return fromInteger24;
    case 32:
        return fromInteger32;
    default:
        throw WAVError::unsupported("PCM " + std::to_string(bits) + "-bit");
    }
}

SampleReader readerOfFloats(unsigned bits)
{
    switch (bits) {
    case 32:
        return fromFloat32;
    case 64:
        return fromFloat64;
    default:
        throw WAVError::unsupported("float " + std::to_string(bits) + "-bit");
    }
}

SampleReader sampleReader(const Layout& layout)
{
    if (layout.bits < 8)
        throw WAVError::unsupported("0 bits/sample");
    if (layout.formatTag == integerPCM)
        return readerOfIntegers(layout.bits);
    if (layout.formatTag == floatPCM)
        return readerOfFloats(layout.bits);
    throw WAVError::unsupported("format tag " + std::to_string(layout.formatTag));
}

} // namespace

PCM decode(Bytes file)
{
    if (!hasTag(file, 0, "RIFF") || !hasTag(file, 8, "WAVE"))
        throw WAVError::notRIFF();
    if (file.size() < smallestFile)
        throw WAVError::truncated();

    const Layout layout = readLayout(file);
    if (!layout.data)
        throw WAVError::truncated();
    if (layout.sampleRate < 1)
        throw WAVError::unsupported("sample rate 0");

    const SampleReader read = sampleReader(layout);
    const size_t sampleSize = layout.bits / 8;
    PCM pcm { .samples = {}, .sampleRate = static_cast<double>(layout.sampleRate), .channels = layout.channels };
    pcm.samples.resize(layout.data->size() / sampleSize);
    for (size_t i = 0; i < pcm.samples.size(); ++i)
        pcm.samples[i] = read(layout.data->data() + i * sampleSize);
    return pcm;
}

} // namespace AudioIO::WAV
