// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Float16.h>
#include <PlatformSupport/Precondition.h>

#include <bit>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace PlatformSupport {

namespace {

constexpr uint32_t signMask32 = 0x8000'0000;
constexpr uint32_t exponentMask16 = 0x7C00;
constexpr uint32_t smallestNormal16 = 0x3880'0000; // 2^-14
constexpr uint32_t overflow16 = 0x477F'F000; // 65520: the first value that rounds to infinity
constexpr uint32_t infinity32 = 0x7F80'0000;

void toFloatPlain(std::span<const Float16> from, std::span<float> to) noexcept
{
    for (size_t i = 0; i < from.size(); ++i)
        to[i] = toFloat(from[i]);
}

void toFloat16Plain(std::span<const float> from, std::span<Float16> to) noexcept
{
    for (size_t i = 0; i < from.size(); ++i)
        to[i] = toFloat16(from[i]);
}

#if defined(__x86_64__)
bool hasF16c() noexcept
{
    // Every processor with AVX2 has F16C; not every compiler knows the latter's name.
    static const bool has = __builtin_cpu_supports("avx2") != 0;
    return has;
}

__attribute__((target("avx,f16c"))) void toFloatF16c(std::span<const Float16> from, std::span<float> to) noexcept
{
    size_t i = 0;
    for (; i + 8 <= from.size(); i += 8) {
        const __m128i half = _mm_loadu_si128(reinterpret_cast<const __m128i*>(&from[i]));
        _mm256_storeu_ps(&to[i], _mm256_cvtph_ps(half));
    }
    toFloatPlain(from.subspan(i), to.subspan(i));
}

__attribute__((target("avx,f16c"))) void toFloat16F16c(std::span<const float> from, std::span<Float16> to) noexcept
{
    size_t i = 0;
    for (; i + 8 <= from.size(); i += 8) {
        const __m128i half = _mm256_cvtps_ph(_mm256_loadu_ps(&from[i]), _MM_FROUND_TO_NEAREST_INT);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(&to[i]), half);
    }
    toFloat16Plain(from.subspan(i), to.subspan(i));
}
#endif

} // namespace

float toFloat(Float16 value) noexcept
{
    const uint32_t sign = static_cast<uint32_t>(value.bits & 0x8000u) << 16;
    const uint32_t exponent = value.bits & exponentMask16;
    const uint32_t fraction = value.bits & 0x03FFu;
    if (exponent == exponentMask16)
        return std::bit_cast<float>(sign | infinity32 | (fraction << 13) | (fraction != 0 ? 0x0040'0000u : 0u));
    if (exponent == 0) {
        const float magnitude = static_cast<float>(fraction) * 0x1p-24f;
        return std::bit_cast<float>(sign | std::bit_cast<uint32_t>(magnitude));
    }
    return std::bit_cast<float>(sign | (((exponent >> 10) + 112u) << 23) | (fraction << 13));
}

Float16 toFloat16(float value) noexcept
{
    const uint32_t bits = std::bit_cast<uint32_t>(value);
    const uint32_t sign = (bits & signMask32) >> 16;
    const uint32_t magnitude = bits & ~signMask32;
    if (magnitude > infinity32)
        return { static_cast<uint16_t>(sign | 0x7E00u | ((magnitude >> 13) & 0x03FFu)) };
    if (magnitude >= overflow16)
        return { static_cast<uint16_t>(sign | exponentMask16) };
    if (magnitude < smallestNormal16) {
        // Adding 0.5 lines the fraction up with the smallest subnormal, 2^-24, and rounds to nearest even.
        const float aligned = std::bit_cast<float>(magnitude) + 0.5f;
        return { static_cast<uint16_t>(sign | (std::bit_cast<uint32_t>(aligned) - std::bit_cast<uint32_t>(0.5f))) };
    }
    const uint32_t odd = (magnitude >> 13) & 1u;
    const uint32_t rounded = magnitude - (112u << 23) + 0x0FFFu + odd;
    return { static_cast<uint16_t>(sign | (rounded >> 13)) };
}

void toFloat(std::span<const Float16> from, std::span<float> to) noexcept
{
    precondition(from.size() == to.size(), "conversion between rows of different lengths");
#if defined(__x86_64__)
    if (hasF16c())
        return toFloatF16c(from, to);
#endif
    toFloatPlain(from, to);
}

void toFloat16(std::span<const float> from, std::span<Float16> to) noexcept
{
    precondition(from.size() == to.size(), "conversion between rows of different lengths");
#if defined(__x86_64__)
    if (hasF16c())
        return toFloat16F16c(from, to);
#endif
    toFloat16Plain(from, to);
}

} // namespace PlatformSupport
