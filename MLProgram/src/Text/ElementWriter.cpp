// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Text/ElementWriter.h"

#include "Program/ElementCodec.h"
#include "Text/TextError.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace MLProgram {
namespace {

template <typename Number, typename... Format> std::optional<Number> parsed(std::string_view digits, Format... format)
{
    Number value {};
    const char* const end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, value, format...);
    return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

std::optional<double> unsignedReal(std::string_view text)
{
    if (text == "inf" || text == "infinity")
        return std::numeric_limits<double>::infinity();
    if (text == "nan")
        return std::numeric_limits<double>::quiet_NaN();
    if (text.empty() || text.front() < '0' || text.front() > '9')
        return std::nullopt;
    if (text.starts_with("0x") || text.starts_with("0X"))
        return text.substr(2).starts_with('-') ? std::nullopt : parsed<double>(text.substr(2), std::chars_format::hex);
    return parsed<double>(text, std::chars_format::general);
}

std::optional<double> real(std::string_view text)
{
    if (!text.starts_with('-'))
        return unsignedReal(text);
    const auto magnitude = unsignedReal(text.substr(1));
    return magnitude ? std::optional(-*magnitude) : std::nullopt;
}

// An inexact value becomes the neighbour whose last bit is set, so that rounding the result once more, to a
// narrower type, gives what rounding `value` at once would have given.
float roundedToOdd(double value)
{
    auto rounded = static_cast<float>(value);
    if (std::isnan(value) || static_cast<double>(rounded) == value)
        return rounded;
    if (std::abs(static_cast<double>(rounded)) > std::abs(value))
        rounded = std::nextafter(rounded, 0.0F);
    return std::bit_cast<float>(std::bit_cast<uint32_t>(rounded) | 1U);
}

// The byte of an 8-bit float that has just this value; the text holds no others.
std::optional<uint8_t> eightBitFloat(ScalarType type, double value)
{
    for (unsigned bits = 0; bits < 256; ++bits) {
        const std::array<std::byte, 1> stored { static_cast<std::byte>(bits) };
        std::array<float, 1> decoded {};
        readReals(type, stored, 0, decoded);
        const bool isSame = std::isnan(value) ? std::isnan(decoded[0])
                                              : value == decoded[0] && std::signbit(value) == std::signbit(decoded[0]);
        if (isSame)
            return static_cast<uint8_t>(bits);
    }
    return std::nullopt;
}

[[noreturn]] void failToRead(const Token& token, ScalarType type)
{
    failAt(token, "\"" + std::string(token.text) + "\" is no value of type " + std::string(nameOf(type)));
}

} // namespace

ElementWriter::ElementWriter(ScalarType type, size_t elements)
    : type_(type)
{
    bytes_.reserve((elements * bitsOf(type) + 7) / 8);
}

void ElementWriter::append(const Token& token)
{
    const bool isWord = token.kind == Token::Kind::identifier || token.kind == Token::Kind::number;
    if (!isWord)
        failToRead(token, type_);
    if (isFloatingPoint(type_))
        return appendFloat(token);
    if (isInteger(type_))
        return appendInteger(token);
    if (token.text != "true" && token.text != "false")
        failToRead(token, type_);
    bytes_.push_back(static_cast<std::byte>(token.text == "true"));
}

std::vector<std::byte> ElementWriter::finish()
{
    return std::move(bytes_);
}

void ElementWriter::appendFloat(const Token& token)
{
    const auto value = real(token.text);
    if (!value)
        failToRead(token, type_);
    if (type_ == ScalarType::float64)
        return appendBytes(*value);
    if (type_ == ScalarType::float32)
        return appendBytes(static_cast<float>(*value));
    if (bitsOf(type_) == 16) {
        std::array<std::byte, 2> stored {};
        writeReals(type_, std::array { roundedToOdd(*value) }, stored);
        bytes_.insert(bytes_.end(), stored.begin(), stored.end());
        return;
    }
    const auto stored = eightBitFloat(type_, *value);
    if (!stored)
        failToRead(token, type_);
    bytes_.push_back(static_cast<std::byte>(*stored));
}

void ElementWriter::appendInteger(const Token& token)
{
    const unsigned width = bitsOf(type_);
    if (isSigned(type_)) {
        const auto value = parsed<int64_t>(token.text);
        const int64_t limit = std::numeric_limits<int64_t>::max() >> (64U - width);
        if (!value || *value > limit || *value < -limit - 1)
            failToRead(token, type_);
        return appendBits(static_cast<uint64_t>(*value));
    }
    const auto value = parsed<uint64_t>(token.text);
    if (!value || *value > std::numeric_limits<uint64_t>::max() >> (64U - width))
        failToRead(token, type_);
    appendBits(*value);
}

// Appends the lowest bits of `bits`, as many as an element has.
void ElementWriter::appendBits(uint64_t bits)
{
    for (unsigned left = bitsOf(type_); left > 0;) {
        if (usedBits_ == 0)
            bytes_.push_back(std::byte { 0 });
        const unsigned count = std::min(8U - usedBits_, left);
        const uint64_t piece = bits & ((1U << count) - 1U);
        bytes_.back() |= static_cast<std::byte>(piece << usedBits_);
        usedBits_ = (usedBits_ + count) % 8U;
        bits >>= count;
        left -= count;
    }
}

template <typename Stored> void ElementWriter::appendBytes(Stored value)
{
    const auto stored = std::bit_cast<std::array<std::byte, sizeof(Stored)>>(value);
    bytes_.insert(bytes_.end(), stored.begin(), stored.end());
}

} // namespace MLProgram
