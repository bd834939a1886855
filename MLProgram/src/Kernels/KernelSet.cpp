// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Kernels/KernelSet.h"

#include "Kernels/ProcessorKernels.h"

#include <boost/container/static_vector.hpp>

namespace MLProgram {

namespace {

using KernelSets = boost::container::static_vector<const KernelSet*, 3>;

KernelSets detect() noexcept
{
    KernelSets sets { &referenceKernels() };
#if defined(__x86_64__)
    // Every processor with AVX2 has F16C too; not every compiler knows the latter's name.
    const bool hasAvx2 = __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
    if (hasAvx2)
        sets.push_back(&avx2Kernels());
    if (hasAvx2 && __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512dq") != 0)
        sets.push_back(&avx512Kernels());
#endif
    return sets;
}

const KernelSets& sets() noexcept
{
    static const KernelSets detected = detect();
    return detected;
}

} // namespace

const KernelSet& kernelsOfThisProcessor() noexcept
{
    return *sets().back();
}

std::span<const KernelSet* const> allKernelsOfThisProcessor() noexcept
{
    return { sets().data(), sets().size() };
}

} // namespace MLProgram
