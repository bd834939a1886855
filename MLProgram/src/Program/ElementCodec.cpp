// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program/ElementCodec.h"

#include <PlatformSupport/Float16.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace MLProgram {
namespace {

using PlatformSupport::Float16;

template <typename Stored> Stored load(std::span<const std::byte> packed, size_t index)
{
    Stored value;
    std::memcpy(&value, packed.data() + index * sizeof(Stored), sizeof(Stored));
    return value;
}

template <typename Stored> void copyReals(std::span<const std::byte> packed, size_t first, std::span<float> to)
{
    for (size_t i = 0; i < to.size(); ++i)
        to[i] = static_cast<float>(load<Stored>(packed, first + i));
}

template <typename Stored> void copyIntegers(std::span<const std::byte> packed, size_t first, std::span<int32_t> to)
{
    for (size_t i = 0; i < to.size(); ++i) {
        const auto value = load<Stored>(packed, first + i);
        if (std::in_range<int32_t>(value))
            to[i] = static_cast<int32_t>(value);
        else
            to[i] = value > 0 ? std::numeric_limits<int32_t>::max() : std::numeric_limits<int32_t>::min();
    }
}

// The `width` bits (at most 8) of element `index`, which may straddle two bytes.
unsigned bitField(std::span<const std::byte> packed, size_t index, unsigned width)
{
    const size_t bit = index * width;
    unsigned window = std::to_integer<unsigned>(packed[bit / 8]);
    if (bit / 8 + 1 < packed.size())
        window |= std::to_integer<unsigned>(packed[bit / 8 + 1]) << 8;
    return (window >> (bit % 8)) & ((1U << width) - 1U);
}

void unpackIntegers(ScalarType type, std::span<const std::byte> packed, size_t first, std::span<int32_t> to)
{
    const unsigned width = bitsOf(type);
    const unsigned signBit = isSigned(type) ? 1U << (width - 1U) : 0;
    for (size_t i = 0; i < to.size(); ++i)
        to[i] = static_cast<int32_t>(bitField(packed, first + i, width) ^ signBit) - static_cast<int32_t>(signBit);
}

// The value of an 8-bit float with `fractionBits` of fraction and the rest, but for the sign, exponent.
float eightBitFloat(unsigned bits, int fractionBits)
{
    const int bias = (1 << (6 - fractionBits)) - 1;
    const int exponent = static_cast<int>((bits & 0x7FU) >> fractionBits);
    const int fraction = static_cast<int>(bits & ((1U << fractionBits) - 1U));
    const int one = 1 << fractionBits;
    const float magnitude = exponent == 0
        ? std::ldexp(static_cast<float>(fraction), 1 - bias - fractionBits)
        : std::ldexp(static_cast<float>(one + fraction), exponent - bias - fractionBits);
    return (bits & 0x80U) != 0 ? -magnitude : magnitude;
}

float fromE4M3(unsigned bits)
{
    return (bits & 0x7FU) == 0x7FU ? std::numeric_limits<float>::quiet_NaN() : eightBitFloat(bits, 3);
}

// Its bits are the upper half of a 16-bit float's.
float fromE5M2(unsigned bits)
{
    return toFloat(Float16 { static_cast<uint16_t>(bits << 8U) });
}

void readEightBitFloats(std::span<const std::byte> packed, size_t first, std::span<float> to, float (*decode)(unsigned))
{
    for (size_t i = 0; i < to.size(); ++i)
        to[i] = decode(std::to_integer<unsigned>(packed[first + i]));
}

void readBrainFloats(std::span<const std::byte> packed, size_t first, std::span<float> to)
{
    for (size_t i = 0; i < to.size(); ++i)
        to[i] = std::bit_cast<float>(static_cast<uint32_t>(load<uint16_t>(packed, first + i)) << 16U);
}

void readHalves(std::span<const std::byte> packed, size_t first, std::span<float> to)
{
    std::array<Float16, 256> halves; // one copy into aligned storage, a block at a time
    for (size_t done = 0; done < to.size();) {
        const size_t count = std::min(halves.size(), to.size() - done);
        std::memcpy(halves.data(), packed.data() + (first + done) * sizeof(Float16), count * sizeof(Float16));
        toFloat(std::span<const Float16>(halves).first(count), to.subspan(done, count));
        done += count;
    }
}

void readIntegersAsReals(ScalarType type, std::span<const std::byte> packed, size_t first, std::span<float> to)
{
    std::array<int32_t, 256> integers;
    for (size_t done = 0; done < to.size();) {
        const size_t count = std::min(integers.size(), to.size() - done);
        readIntegers(type, packed, first + done, std::span(integers).first(count));
        std::copy_n(integers.begin(), count, to.begin() + static_cast<std::ptrdiff_t>(done));
        done += count;
    }
}

// Nearest, ties to even; a NaN keeps its sign and upper bits.
uint16_t toBrainFloat(float value)
{
    const auto bits = std::bit_cast<uint32_t>(value);
    if (std::isnan(value))
        return static_cast<uint16_t>((bits >> 16U) | 0x40U);
    return static_cast<uint16_t>((bits + 0x7FFFU + ((bits >> 16U) & 1U)) >> 16U);
}

template <typename Stored, typename Convert>
void storeEach(std::span<const float> from, std::span<std::byte> to, Convert convert)
{
    for (size_t i = 0; i < from.size(); ++i) {
        const Stored value = convert(from[i]);
        std::memcpy(to.data() + i * sizeof(Stored), &value, sizeof(Stored));
    }
}

} // namespace

void readReals(ScalarType type, std::span<const std::byte> packed, size_t first, std::span<float> to)
{
    switch (type) {
    case ScalarType::float16:
        return readHalves(packed, first, to);
    case ScalarType::float32:
        return copyReals<float>(packed, first, to);
    case ScalarType::float64:
        return copyReals<double>(packed, first, to);
    case ScalarType::bfloat16:
        return readBrainFloats(packed, first, to);
    case ScalarType::float8E4M3:
        return readEightBitFloats(packed, first, to, fromE4M3);
    case ScalarType::float8E5M2:
        return readEightBitFloats(packed, first, to, fromE5M2);
    default:
        return readIntegersAsReals(type, packed, first, to);
    }
}

void readIntegers(ScalarType type, std::span<const std::byte> packed, size_t first, std::span<int32_t> to)
{
    switch (type) {
    case ScalarType::boolean:
        for (size_t i = 0; i < to.size(); ++i)
            to[i] = packed[first + i] != std::byte { 0 } ? 1 : 0;
        return;
    case ScalarType::int8:
        return copyIntegers<int8_t>(packed, first, to);
    case ScalarType::int16:
        return copyIntegers<int16_t>(packed, first, to);
    case ScalarType::int32:
        return copyIntegers<int32_t>(packed, first, to);
    case ScalarType::int64:
        return copyIntegers<int64_t>(packed, first, to);
    case ScalarType::uint8:
        return copyIntegers<uint8_t>(packed, first, to);
    case ScalarType::uint16:
        return copyIntegers<uint16_t>(packed, first, to);
    case ScalarType::uint32:
        return copyIntegers<uint32_t>(packed, first, to);
    case ScalarType::uint64:
        return copyIntegers<uint64_t>(packed, first, to);
    default:
        PlatformSupport::precondition(isInteger(type), "only integers and booleans are read as integers");
        return unpackIntegers(type, packed, first, to);
    }
}

void writeReals(ScalarType type, std::span<const float> from, std::span<std::byte> to)
{
    switch (type) {
    case ScalarType::float16:
        return storeEach<Float16>(from, to, [](float value) { return PlatformSupport::toFloat16(value); });
    case ScalarType::float32:
        return storeEach<float>(from, to, [](float value) { return value; });
    case ScalarType::float64:
        return storeEach<double>(from, to, [](float value) { return static_cast<double>(value); });
    case ScalarType::bfloat16:
        return storeEach<uint16_t>(from, to, toBrainFloat);
    default:
        PlatformSupport::fatalError("only floating-point types of 16 bits and more are written");
    }
}

} // namespace MLProgram
