// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Interpreter/BufferPool.h"

#include <MLProgram/MLModelError.h>

namespace MLProgram {

int32_t BufferPool::acquire(size_t bytes, int32_t preferred)
{
    int32_t best = fits(preferred, bytes) ? preferred : smallestFit(bytes);
    if (best == none) {
        if (bytes > maximumBytes_ - bytes_)
            throw MLModelError(MLModelError::Case::outOfMemory, "the tensors of the program take too much memory");
        buffers_.push_back({ Tensor({ ElementType::boolean, { static_cast<int64_t>(bytes) } }), bytes, true });
        bytes_ += bytes;
        best = static_cast<int32_t>(buffers_.size()) - 1;
    }
    buffers_[static_cast<size_t>(best)].isFree = false;
    return best;
}

void BufferPool::release(int32_t buffer) noexcept
{
    if (buffer != none)
        buffers_[static_cast<size_t>(buffer)].isFree = true;
}

int32_t BufferPool::smallestFit(size_t bytes) const noexcept
{
    int32_t best = none;
    for (int32_t i = 0; i < static_cast<int32_t>(buffers_.size()); ++i) {
        if (fits(i, bytes) && (best == none || capacity(i) < capacity(best)))
            best = i;
    }
    return best;
}

bool BufferPool::fits(int32_t buffer, size_t bytes) const noexcept
{
    return buffer != none && buffers_[static_cast<size_t>(buffer)].isFree && capacity(buffer) >= bytes;
}

} // namespace MLProgram
