// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/KernelSet.h"
#include "Tensor/Tensor.h"

#include <cstdint>

namespace MLProgram {

// Many small products of computed matrices, as attention needs them: for each index of the batch,
// result[row][column] = sum over k of left[row][k] · right[k][column]. All sides may lie at any strides, in values;
// a batch stride of 0 uses one matrix again and again. Columns of the result lie side by side.
struct BatchedProduct {
    struct Matrix {
        const float* values = nullptr;
        Shape batchStrides;
        int64_t rowStride = 0;
        int64_t columnStride = 0;
    };
    Shape batch;
    Matrix left; // [rows][depth]
    Matrix right; // [depth][columns]
    float* result = nullptr;
    Shape resultBatchStrides;
    int64_t resultStride = 0;
    int64_t rows = 0;
    int64_t depth = 0;
    int64_t columns = 0;
    float* workspace = nullptr; // batchedProductWorkspace() floats
};

int64_t batchedProductWorkspace(int64_t rows, int64_t depth) noexcept;

void multiply(const BatchedProduct& product, const KernelSet& kernels);

} // namespace MLProgram
