// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program/ScalarType.h"

#include <array>

namespace MLProgram {
namespace {

enum class Family : uint8_t { floatingPoint, boolean, string, signedInteger, unsignedInteger };

struct Facts {
    std::string_view name;
    Family family;
    unsigned bits;
};

// In the order of ScalarType.
constexpr std::array<Facts, 22> table { {
    { "fp16", Family::floatingPoint, 16 },
    { "fp32", Family::floatingPoint, 32 },
    { "fp64", Family::floatingPoint, 64 },
    { "bf16", Family::floatingPoint, 16 },
    { "fp8e4m3fn", Family::floatingPoint, 8 },
    { "fp8e5m2", Family::floatingPoint, 8 },
    { "bool", Family::boolean, 8 },
    { "string", Family::string, 0 },
    { "int4", Family::signedInteger, 4 },
    { "int8", Family::signedInteger, 8 },
    { "int16", Family::signedInteger, 16 },
    { "int32", Family::signedInteger, 32 },
    { "int64", Family::signedInteger, 64 },
    { "uint1", Family::unsignedInteger, 1 },
    { "uint2", Family::unsignedInteger, 2 },
    { "uint3", Family::unsignedInteger, 3 },
    { "uint4", Family::unsignedInteger, 4 },
    { "uint6", Family::unsignedInteger, 6 },
    { "uint8", Family::unsignedInteger, 8 },
    { "uint16", Family::unsignedInteger, 16 },
    { "uint32", Family::unsignedInteger, 32 },
    { "uint64", Family::unsignedInteger, 64 },
} };
static_assert(table.size() == static_cast<size_t>(ScalarType::uint64) + 1);

const Facts& factsOf(ScalarType type) noexcept
{
    return table[static_cast<size_t>(type)];
}

} // namespace

std::optional<ScalarType> scalarTypeNamed(std::string_view word) noexcept
{
    for (size_t i = 0; i < table.size(); ++i) {
        if (table[i].name == word)
            return static_cast<ScalarType>(i);
    }
    return std::nullopt;
}

std::string_view nameOf(ScalarType type) noexcept
{
    return factsOf(type).name;
}

bool isFloatingPoint(ScalarType type) noexcept
{
    return factsOf(type).family == Family::floatingPoint;
}

bool isInteger(ScalarType type) noexcept
{
    return factsOf(type).family == Family::signedInteger || factsOf(type).family == Family::unsignedInteger;
}

bool isSigned(ScalarType type) noexcept
{
    return factsOf(type).family == Family::signedInteger || isFloatingPoint(type);
}

unsigned bitsOf(ScalarType type) noexcept
{
    return factsOf(type).bits;
}

ElementType elementTypeOf(ScalarType type) noexcept
{
    if (isFloatingPoint(type))
        return ElementType::real;
    return type == ScalarType::boolean ? ElementType::boolean : ElementType::integer;
}

std::optional<int64_t> checkedElementCount(std::span<const int64_t> shape) noexcept
{
    bool isEmpty = false;
    int64_t count = 1;
    for (const int64_t dimension : shape) {
        if (dimension < 0)
            return std::nullopt;
        isEmpty = isEmpty || dimension == 0;
        if (dimension != 0 && __builtin_mul_overflow(count, dimension, &count))
            return std::nullopt;
    }
    return isEmpty ? 0 : count;
}

std::optional<int64_t> checkedByteCount(ScalarType type, int64_t elementCount) noexcept
{
    int64_t bits = 0;
    if (__builtin_mul_overflow(elementCount, static_cast<int64_t>(bitsOf(type)), &bits))
        return std::nullopt;
    return bits / 8 + (bits % 8 != 0 ? 1 : 0);
}

} // namespace MLProgram
