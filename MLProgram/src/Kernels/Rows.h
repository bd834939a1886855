// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/LeftMatrix.h"
#include "Kernels/RowProgram.h"

#include <boost/container/small_vector.hpp>

#include <cstdint>

namespace MLProgram {

// Values in memory that somebody else lays out: `strides` belong to the dimensions of a loop, in values; 0 uses one
// value for the whole dimension.
struct StridedValues {
    void* data = nullptr;
    ElementType element = ElementType::real;
    Shape strides;
};

using StridedInputs = boost::container::small_vector<StridedValues, 4>;

// output = program(inputs) for every index of a loop, whose last dimension is the innermost. The output may be the
// very memory of an input with the same strides.
struct Map {
    Shape shape;
    RowProgram program;
    StridedInputs inputs;
    StridedValues output;
};

// Merges neighbouring dimensions that lie one after the other in every operand, and drops dimensions of 1.
void simplify(Map& map);

void run(const Map& map, const KernelSet& kernels);

// Softmax over the innermost dimension of a map's result, whose values lie side by side.
void runSoftmax(const Map& map, const KernelSet& kernels);

// Layer normalisation of rows: the loop runs over the rows.
struct LayerNorm {
    Shape shape;
    StridedValues input;
    StridedValues output; // both with their rows' values side by side
    const float* gamma = nullptr; // [length], or null
    const float* beta = nullptr;
    int64_t length = 0;
    float epsilon = 0;
};

void run(const LayerNorm& norm, const KernelSet& kernels);

// A convolution of each channel with a kernel of its own, channels last. Output positions lie outputStride apart.
struct Depthwise {
    Window window;
    const float* weights = nullptr; // [taps][channels]
    const float* bias = nullptr; // [channels], or null
    float* output = nullptr;
    int64_t outputStride = 0;
};

void run(const Depthwise& depthwise, const KernelSet& kernels);

// The same on the calling thread alone.
void runAlone(const Depthwise& depthwise, const KernelSet& kernels);

} // namespace MLProgram
