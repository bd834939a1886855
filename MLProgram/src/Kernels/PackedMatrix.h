// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Kernels/Pages.h"

#include <PlatformSupport/Float16.h>

#include <boost/container/static_vector.hpp>

#include <cstddef>
#include <cstdint>

namespace MLProgram {

// Where the value (k, n) of a right-hand matrix [depth][columns] lies in a weight tensor. The depth may run over
// several dimensions of the tensor, outermost first.
//
// Example: the weight [64, 3, 5, 5] of a convolution has columns { 64, 75 } and, channels last, the depth
// { 5, 5 }, { 5, 1 }, { 3, 25 }: kernel rows, kernel columns, channels, each with its count and stride.
struct WeightLayout {
    struct Dimension {
        int64_t count = 1;
        int64_t stride = 1;
    };
    Dimension columns;
    boost::container::static_vector<Dimension, 4> depth;
};

// The right-hand matrix of a product, held once and for all in the order in which the kernels read it: panels of
// panelWidth columns, each [depth][panelWidth], the last filled up with zeros. Values keep the width they had:
// 16-bit weights take half the memory and are widened, exactly, where they are used.
class PackedMatrix {
public:
    PackedMatrix(const PlatformSupport::Float16* weights, const WeightLayout& layout, int64_t panelWidth);
    PackedMatrix(const float* weights, const WeightLayout& layout, int64_t panelWidth);

    int64_t depth() const noexcept { return depth_; }
    int64_t columns() const noexcept { return columns_; }
    int64_t panelWidth() const noexcept { return panelWidth_; }
    int64_t panelCount() const noexcept { return (columns_ + panelWidth_ - 1) / panelWidth_; }

    // Null when the values are of the other width. `firstRow` steps of the depth are skipped.
    const PlatformSupport::Float16* halfPanel(int64_t panel, int64_t firstRow = 0) const noexcept;
    const float* singlePanel(int64_t panel, int64_t firstRow = 0) const noexcept;

private:
    template <typename Value> void pack(const Value* weights, const WeightLayout& layout);
    size_t offset(int64_t panel, int64_t firstRow) const noexcept;

    int64_t depth_ = 0;
    int64_t columns_ = 0;
    int64_t panelWidth_ = 0;
    bool isHalf_ = false;
    Pages panels_;
};

} // namespace MLProgram
