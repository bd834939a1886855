// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Description/ProtobufReader.h"

#include <MLProgram/MLModelError.h>

namespace MLProgram {
namespace {

constexpr unsigned longestVariable = 10; // bytes of 7 bits for a number of 64

[[noreturn]] void fail()
{
    throw MLModelError(MLModelError::Case::invalidProgram, "coremldata.bin is damaged");
}

} // namespace

bool ProtobufReader::next()
{
    if (rest_.empty())
        return false;
    const uint64_t tag = takeVariable();
    field_ = tag >> 3U;
    isBytes_ = false;
    switch (tag & 7U) {
    case 0:
        number_ = takeVariable();
        return true;
    case 1:
        number_ = takeFixed(8);
        return true;
    case 2: {
        const uint64_t size = takeVariable();
        if (size > rest_.size())
            fail();
        isBytes_ = true;
        bytes_ = rest_.first(size);
        rest_ = rest_.subspan(size);
        return true;
    }
    case 5:
        number_ = takeFixed(4);
        return true;
    default:
        fail();
    }
}

uint64_t ProtobufReader::number() const
{
    if (isBytes_)
        fail();
    return number_;
}

std::span<const std::byte> ProtobufReader::bytes() const
{
    if (!isBytes_)
        fail();
    return bytes_;
}

std::string ProtobufReader::text() const
{
    const auto content = bytes();
    return { reinterpret_cast<const char*>(content.data()), content.size() };
}

uint64_t ProtobufReader::takeVariable()
{
    uint64_t value = 0;
    for (unsigned i = 0; i < longestVariable; ++i) {
        if (rest_.empty())
            fail();
        const auto byte = std::to_integer<uint64_t>(rest_.front());
        rest_ = rest_.subspan(1);
        value |= (byte & 0x7FU) << (7U * i);
        if ((byte & 0x80U) == 0)
            return value;
    }
    fail();
}

uint64_t ProtobufReader::takeFixed(size_t size)
{
    if (rest_.size() < size)
        fail();
    uint64_t value = 0;
    for (size_t i = 0; i < size; ++i)
        value |= std::to_integer<uint64_t>(rest_[i]) << (8U * i);
    rest_ = rest_.subspan(size);
    return value;
}

} // namespace MLProgram
