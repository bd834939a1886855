// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/ProcessorKernels.h"
#include "Kernels/Vector/VectorKernels.h"

#include <immintrin.h>

namespace MLProgram {

namespace {

// Sixteen floats in a 512-bit register.
struct Vector {
    using Register = __m512;
    static constexpr int64_t width = 16;
    static constexpr int64_t tileRows = 14; // 28 sums, two columns of the panel and one value of a row: 31 registers
    static constexpr std::string_view name = "AVX-512";

    static __mmask16 first(int64_t count) { return static_cast<__mmask16>((1u << count) - 1u); }

    static Register zero() { return _mm512_setzero_ps(); }
    static Register all(float value) { return _mm512_set1_ps(value); }
    static Register load(const float* from) { return _mm512_loadu_ps(from); }
    static Register load(const float* from, int64_t count) { return _mm512_maskz_loadu_ps(first(count), from); }
    static Register loadOr(const float* from, int64_t count, Register otherwise)
    {
        return _mm512_mask_loadu_ps(otherwise, first(count), from);
    }
    static void store(float* to, Register x) { _mm512_storeu_ps(to, x); }
    static void store(float* to, Register x, int64_t count) { _mm512_mask_storeu_ps(to, first(count), x); }
    static Register widen(const PlatformSupport::Float16* from)
    {
        return _mm512_cvtph_ps(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(from)));
    }

    static Register multiplyAdd(Register a, Register b, Register c) { return _mm512_fmadd_ps(a, b, c); }
    static Register minimum(Register a, Register b) { return _mm512_min_ps(a, b); }
    static Register maximum(Register a, Register b) { return _mm512_max_ps(a, b); }
    static Register squareRoot(Register x) { return _mm512_sqrt_ps(x); }
    static Register absolute(Register x) { return _mm512_abs_ps(x); }
    static Register withSign(Register magnitude, Register sign)
    {
        return _mm512_or_ps(magnitude, _mm512_and_ps(sign, all(-0.0f)));
    }
    static Register nearest(Register x)
    {
        return _mm512_roundscale_ps(x, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
    }
    static Register timesPowerOfTwo(Register x, Register exponent) { return _mm512_scalef_ps(x, exponent); }

    // a < b ? x : y; y where a or b is NaN.
    static Register whereLess(Register a, Register b, Register x, Register y)
    {
        return _mm512_mask_blend_ps(_mm512_cmp_ps_mask(a, b, _CMP_LT_OQ), y, x);
    }
    static Register whereZero(Register a, Register x, Register y)
    {
        return _mm512_mask_blend_ps(_mm512_cmp_ps_mask(a, zero(), _CMP_EQ_OQ), y, x);
    }

    static float sum(Register x) { return _mm512_reduce_add_ps(x); }
    static float largest(Register x) { return _mm512_reduce_max_ps(x); }
};

} // namespace

const KernelSet& avx512Kernels() noexcept
{
    static constexpr KernelSet set = vectorKernels<Vector>();
    return set;
}

} // namespace MLProgram
