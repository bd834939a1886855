// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/ProcessorKernels.h"
#include "Kernels/Vector/VectorKernels.h"

#include <immintrin.h>

namespace MLProgram {

namespace {

// Eight floats in a 256-bit register.
struct Vector {
    using Register = __m256;
    static constexpr int64_t width = 8;
    static constexpr int64_t tileRows = 6; // 12 sums, two columns of the panel and one value of a row: 15 registers
    static constexpr std::string_view name = "AVX2";

    static __m256i first(int64_t count)
    {
        const __m256i lanes = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
        return _mm256_cmpgt_epi32(_mm256_set1_epi32(static_cast<int>(count)), lanes);
    }

    static Register zero() { return _mm256_setzero_ps(); }
    static Register all(float value) { return _mm256_set1_ps(value); }
    static Register load(const float* from) { return _mm256_loadu_ps(from); }
    static Register load(const float* from, int64_t count) { return _mm256_maskload_ps(from, first(count)); }
    static Register loadOr(const float* from, int64_t count, Register otherwise)
    {
        return _mm256_blendv_ps(otherwise, load(from, count), _mm256_castsi256_ps(first(count)));
    }
    static void store(float* to, Register x) { _mm256_storeu_ps(to, x); }
    static void store(float* to, Register x, int64_t count) { _mm256_maskstore_ps(to, first(count), x); }
    static Register widen(const PlatformSupport::Float16* from)
    {
        return _mm256_cvtph_ps(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
    }

    static Register multiplyAdd(Register a, Register b, Register c) { return _mm256_fmadd_ps(a, b, c); }
    static Register minimum(Register a, Register b) { return _mm256_min_ps(a, b); }
    static Register maximum(Register a, Register b) { return _mm256_max_ps(a, b); }
    static Register squareRoot(Register x) { return _mm256_sqrt_ps(x); }
    static Register absolute(Register x) { return _mm256_andnot_ps(all(-0.0f), x); }
    static Register withSign(Register magnitude, Register sign)
    {
        return _mm256_or_ps(magnitude, _mm256_and_ps(sign, all(-0.0f)));
    }
    static Register nearest(Register x) { return _mm256_round_ps(x, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC); }

    // In two halves: a power such as 2^-140 is no normal number, though its square root is.
    static Register timesPowerOfTwo(Register x, Register exponent)
    {
        const __m256i whole = _mm256_cvtps_epi32(exponent);
        const __m256i half = _mm256_srai_epi32(whole, 1);
        return x * power(half) * power(_mm256_sub_epi32(whole, half));
    }
    static Register power(__m256i exponent)
    {
        return _mm256_castsi256_ps(_mm256_slli_epi32(_mm256_add_epi32(exponent, _mm256_set1_epi32(127)), 23));
    }

    // a < b ? x : y; y where a or b is NaN.
    static Register whereLess(Register a, Register b, Register x, Register y)
    {
        return _mm256_blendv_ps(y, x, _mm256_cmp_ps(a, b, _CMP_LT_OQ));
    }
    static Register whereZero(Register a, Register x, Register y)
    {
        return _mm256_blendv_ps(y, x, _mm256_cmp_ps(a, zero(), _CMP_EQ_OQ));
    }

    static float sum(Register x)
    {
        __m128 four = _mm_add_ps(_mm256_castps256_ps128(x), _mm256_extractf128_ps(x, 1));
        four = _mm_add_ps(four, _mm_movehl_ps(four, four));
        return _mm_cvtss_f32(_mm_add_ss(four, _mm_movehdup_ps(four)));
    }
    static float largest(Register x)
    {
        __m128 four = _mm_max_ps(_mm256_castps256_ps128(x), _mm256_extractf128_ps(x, 1));
        four = _mm_max_ps(four, _mm_movehl_ps(four, four));
        return _mm_cvtss_f32(_mm_max_ss(four, _mm_movehdup_ps(four)));
    }
};

} // namespace

const KernelSet& avx2Kernels() noexcept
{
    static constexpr KernelSet set = vectorKernels<Vector>();
    return set;
}

} // namespace MLProgram
