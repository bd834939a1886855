// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Tensor/Tensor.h"

#include <cstddef>

namespace MLProgram {

// Divides a tensor into equal blocks, along every dimension as many as `blocks` says: [6, 4] in [2, 1] blocks
// are two of three rows each.
class BlockGrid {
public:
    // True when the ranks agree and each dimension of `blocks` divides that of `shape`.
    static bool divides(const Shape& blocks, const Shape& shape) noexcept
    {
        bool fits = blocks.size() == shape.size();
        for (size_t i = 0; fits && i < shape.size(); ++i)
            fits = blocks[i] > 0 && shape[i] % blocks[i] == 0;
        return fits;
    }

    // Requires divides(blocks, shape).
    BlockGrid(const Shape& blocks, const Shape& shape)
        : blocks_(blocks)
        , shape_(shape)
    {
    }

    // Row-major index of the block that holds the element with this row-major index.
    size_t blockOf(size_t element) const noexcept
    {
        size_t block = 0;
        size_t stride = 1;
        for (size_t i = shape_.size(); i-- > 0;) {
            const auto dimension = static_cast<size_t>(shape_[i]);
            const auto blocks = static_cast<size_t>(blocks_[i]);
            block += element % dimension / (dimension / blocks) * stride;
            element /= dimension;
            stride *= blocks;
        }
        return block;
    }

    // Elements that follow each other and share a block, everywhere.
    size_t runLength() const noexcept
    {
        return shape_.empty() ? 1 : static_cast<size_t>(shape_.back() / blocks_.back());
    }

private:
    Shape blocks_;
    Shape shape_;
};

} // namespace MLProgram
