// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/KernelSet.h"

namespace MLProgram {

// Each is compiled for its own instruction set, and is to be called only where the processor has it.
const KernelSet& avx2Kernels() noexcept; // AVX2, FMA, F16C
const KernelSet& avx512Kernels() noexcept; // AVX-512 F and DQ beside those

} // namespace MLProgram
