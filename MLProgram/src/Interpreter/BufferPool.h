// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Tensor/Tensor.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace MLProgram {

// Storage for the tensors of a run, used again once a tensor is not needed any more.
//
// A run that asks for the same sizes in the same order as the one before, with the buffers that it had, gets the
// same buffers: nothing is allocated.
class BufferPool {
public:
    static constexpr int32_t none = -1;

    explicit BufferPool(size_t maximumBytes) noexcept
        : maximumBytes_(maximumBytes)
    {
    }

    // A buffer of at least that size, its contents unspecified, 64-byte aligned: `preferred` if it is free and
    // large enough, else the smallest free one that is, else a new one.
    // Errors: MLModelError (outOfMemory), also when all buffers together would exceed the maximum.
    int32_t acquire(size_t bytes, int32_t preferred);

    void release(int32_t buffer) noexcept; // `none` is fine
    void* data(int32_t buffer) const { return buffers_[static_cast<size_t>(buffer)].storage.view().data; }

private:
    struct Buffer {
        Tensor storage;
        size_t capacity = 0;
        bool isFree = false;
    };

    size_t capacity(int32_t buffer) const noexcept { return buffers_[static_cast<size_t>(buffer)].capacity; }
    int32_t smallestFit(size_t bytes) const noexcept; // `none` when no free buffer is large enough
    bool fits(int32_t buffer, size_t bytes) const noexcept;

    size_t maximumBytes_;
    size_t bytes_ = 0;
    std::vector<Buffer> buffers_;
};

} // namespace MLProgram
