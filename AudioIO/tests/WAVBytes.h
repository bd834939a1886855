// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

// WAV files byte by byte, well-formed or not.
namespace AudioIO {

using Bytes = std::vector<uint8_t>;

inline Bytes join(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (const Bytes& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

// The text without the zero at its end.
template <size_t size> Bytes bytes(const char (&text)[size])
{
    return { text, text + size - 1 };
}

inline Bytes little(uint64_t value, size_t width)
{
    Bytes number(width);
    for (size_t i = 0; i < width && i < 8; ++i)
        number[i] = static_cast<uint8_t>(value >> (8 * i));
    return number;
}

// With its true size and without padding.
inline Bytes chunk(std::string_view tag, const Bytes& body)
{
    return join({ Bytes(tag.begin(), tag.end()), little(body.size(), 4), body });
}

struct Format {
    unsigned tag = 1;
    unsigned channels = 1;
    unsigned sampleRate = 16'000;
    unsigned bits = 16;
    Bytes rest {}; // what follows the first 16 bytes
};

inline Bytes formatBody(const Format& format)
{
    const unsigned blockAlign = format.channels * format.bits / 8;
    return join({ little(format.tag, 2), little(format.channels, 2), little(format.sampleRate, 4),
        little(format.sampleRate * blockAlign, 4), little(blockAlign, 2), little(format.bits, 2), format.rest });
}

inline Bytes formatChunk(const Format& format)
{
    return chunk("fmt ", formatBody(format));
}

inline Bytes wave(std::initializer_list<Bytes> chunks)
{
    const Bytes body = join(chunks);
    return join({ bytes("RIFF"), little(4 + body.size(), 4), bytes("WAVE"), body });
}

} // namespace AudioIO
