// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/RowInstruction.h"

#include <PlatformSupport/Float16.h>

#include <cstdint>
#include <span>
#include <string_view>

namespace MLProgram {

// One tile of a matrix product, c = start + a · b or c += a · b:
//
//   a   [depth][rows]            packed: the rows' values for each step of the depth lie together
//   b   [depth][panelWidth]      a panel of the right-hand matrix, 32-bit or 16-bit floats
//   c   [rows][panelWidth]       rows are cStride values apart
//   start [panelWidth]           what every row's sums begin with; null for zeros
struct Tile {
    const float* a = nullptr;
    const void* b = nullptr;
    float* c = nullptr;
    const float* start = nullptr;
    int64_t depth = 0;
    int64_t rows = 0; // 1 to tileRows
    int64_t cStride = 0;
    bool accumulate = false;
};

// Most rows a tile of any kernel set has, and most columns.
constexpr int64_t maximumTileRows = 16;
constexpr int64_t maximumPanelWidth = 32;

// The inner loops, for one kind of processor. All work in 32-bit floats with fused multiply-adds or better, on one
// thread; the drivers in this folder cut larger work into these pieces. Pointers need no alignment. Results of
// different sets agree to rounding: the orders of summation differ.
struct KernelSet {
    std::string_view name;

    int64_t tileRows = 0; // rows of a full tile
    int64_t panelWidth = 0; // columns of every panel

    void (*tile)(const Tile& tile); // b of 32-bit floats
    void (*tileOfHalves)(const Tile& tile); // b of 16-bit floats, widened in registers
    void (*widen)(const PlatformSupport::Float16* from, float* to, int64_t count);

    // result[i] = operation(a[i], b[i], c[i]) for `count` values.
    void (*rowInstruction)(const RowOperands& operands);

    // Softmax of a row, in place: the largest value is subtracted first.
    void (*softmax)(float* row, int64_t count);

    // (x - mean) / sqrt(variance + epsilon), times gamma and plus beta where they are not null. `to` may be `from`.
    void (*layerNorm)(const LayerNormRow& row);

    // One position of a depthwise convolution, channels last: to[c] = bias[c] + sum over taps of x[tap][c] · w[tap][c].
    void (*depthwise)(const DepthwisePosition& position);
};

// Plain C++ for every processor: the meaning of each kernel.
const KernelSet& referenceKernels() noexcept;

// The fastest set that this processor can run.
const KernelSet& kernelsOfThisProcessor() noexcept;

// Every set that this processor can run, the reference first.
std::span<const KernelSet* const> allKernelsOfThisProcessor() noexcept;

} // namespace MLProgram
