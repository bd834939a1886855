// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/Product.h"
#include "Kernels/Rows.h"

#include <cstdint>

namespace MLProgram {

// A depthwise convolution of a product's result that nobody else reads. The result is never whole: for each band of
// output positions, the rows of the product under their windows are computed into the cache and convolved there. A
// large result would go to memory and back. Rows that two bands need are computed twice.
struct BandedDepthwise {
    Product product; // a row is one input position; where its result and workspace lie is not used
    Depthwise depthwise; // of one batch item; where its input lies is not used
    float* workspace = nullptr; // bandedDepthwiseWorkspace() floats
};

// Floats of working memory. `depth` is the product's.
int64_t bandedDepthwiseWorkspace(const Window& window, int64_t depth) noexcept;

// Runs on all threads of the shared pool.
void run(const BandedDepthwise& work, const KernelSet& kernels);

} // namespace MLProgram
