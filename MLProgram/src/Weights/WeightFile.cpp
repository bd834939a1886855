// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/WeightFile.h"

#include <MLProgram/MLModelError.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

namespace MLProgram {

static_assert(std::endian::native == std::endian::little, "weights are used as they lie in the file");

namespace {

constexpr size_t blockSize = 64; // of the header and of a record
constexpr uint32_t supportedVersion = 2;
constexpr uint32_t recordSentinel = 0xDEADBEEF;

struct Header {
    uint32_t count;
    uint32_t version;
};

// In the order of the codes, which begin with 1.
constexpr std::array storedTypes {
    ScalarType::float16,
    ScalarType::float32,
    ScalarType::uint8,
    ScalarType::int8,
    ScalarType::bfloat16,
    ScalarType::int16,
    ScalarType::uint16,
    ScalarType::int4,
    ScalarType::uint1,
    ScalarType::uint2,
    ScalarType::uint4,
    ScalarType::uint3,
    ScalarType::uint6,
    ScalarType::int32,
    ScalarType::uint32,
    ScalarType::float8E4M3,
    ScalarType::float8E5M2,
};

std::optional<ScalarType> typeOfCode(uint32_t code)
{
    return code >= 1 && code <= storedTypes.size() ? std::optional(storedTypes[code - 1]) : std::nullopt;
}

// Booleans have no code of their own.
ScalarType storedAs(ScalarType type)
{
    return type == ScalarType::boolean ? ScalarType::uint8 : type;
}

bool isAligned(std::span<const std::byte> data, ScalarType type)
{
    const size_t alignment = std::max<size_t>(1, bitsOf(type) / 8);
    return reinterpret_cast<uintptr_t>(data.data()) % alignment == 0;
}

} // namespace

struct WeightFile::Record {
    uint32_t sentinel;
    uint32_t typeCode;
    uint64_t size;
    uint64_t dataOffset;
    uint64_t unusedBits;
};

WeightFile::WeightFile(std::string name, std::span<const std::byte> bytes, std::shared_ptr<const void> owner)
    : name_(std::move(name))
    , bytes_(bytes)
    , owner_(std::move(owner))
{
    Header header {};
    if (bytes.size() >= blockSize)
        std::memcpy(&header, bytes.data(), sizeof(header));
    if (header.version != supportedVersion)
        throw MLModelError(MLModelError::Case::invalidProgram, name_ + " is not a file of weights, version 2");
}

Constant WeightFile::read(uint64_t offset, ScalarType type, const Shape& shape) const
{
    const Record record = this->record(offset);
    require(typeOfCode(record.typeCode) == storedAs(type), offset, "holds another element type than the program says");
    const auto count = checkedElementCount(shape);
    const auto size = count ? checkedByteCount(type, *count) : std::nullopt;
    require(size && record.size == static_cast<uint64_t>(*size), offset, "has another size than the program says");
    require(record.dataOffset <= bytes_.size() && record.size <= bytes_.size() - record.dataOffset, offset,
        "refers to data beyond the end of the file");
    return constant(type, shape, bytes_.subspan(record.dataOffset, record.size));
}

WeightFile::Record WeightFile::record(uint64_t offset) const
{
    require(offset % blockSize == 0 && offset >= blockSize, offset, "does not begin at a multiple of 64");
    require(offset <= bytes_.size() - blockSize, offset, "lies beyond the end of the file");
    Record record {};
    std::memcpy(&record, bytes_.data() + offset, sizeof(record));
    require(record.sentinel == recordSentinel, offset, "is none");
    return record;
}

// Data that are not aligned, which no compiler writes, are copied.
Constant WeightFile::constant(ScalarType type, const Shape& shape, std::span<const std::byte> data) const
{
    if (!isAligned(data, type))
        return { type, shape, std::vector<std::byte>(data.begin(), data.end()) };
    return { type, shape, data, owner_ };
}

void WeightFile::require(bool holds, uint64_t offset, const char* fault) const
{
    if (!holds)
        throw MLModelError(
            MLModelError::Case::invalidProgram, name_ + ": the record at " + std::to_string(offset) + " " + fault);
}

} // namespace MLProgram
