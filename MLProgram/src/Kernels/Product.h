// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/LeftMatrix.h"
#include "Kernels/PackedMatrix.h"
#include "Kernels/RowProgram.h"

#include <cstdint>
#include <span>

namespace MLProgram {

// A further operand of an epilogue: value (row, column) lies at row · rowStride + column · columnStride.
struct EpilogueInput {
    const void* data = nullptr;
    ElementType element = ElementType::real;
    int64_t rowStride = 0;
    int64_t columnStride = 0;
};

// Element-wise work on the results of a product while they are still in the cache. Input 0 of the program is the
// product's own value; inputs 1 and on are `inputs`.
struct Epilogue {
    const RowProgram* program = nullptr; // null: none
    std::span<const EpilogueInput> inputs;
};

// result[rows][columns] = epilogue(left · right + bias).
struct Product {
    const LeftMatrix* left = nullptr;
    const PackedMatrix* right = nullptr; // its depth is the left's
    float* result = nullptr;
    int64_t resultStride = 0; // values between rows
    const float* bias = nullptr; // [columns], added to every row; null: none
    Epilogue epilogue;
    float* workspace = nullptr; // productWorkspace() floats
};

// Floats of working memory that a product of this size needs.
int64_t productWorkspace(int64_t rows, int64_t depth) noexcept;

// Runs on all threads of the shared pool. `right` was packed for the panels of `kernels`.
void multiply(const Product& product, const KernelSet& kernels);

// The result's rows from firstRow on, as many as `rows` says, on the calling thread alone. They go to where
// `product.result` points.
void multiplyRows(const Product& product, int64_t firstRow, int64_t rows, const KernelSet& kernels);

} // namespace MLProgram
