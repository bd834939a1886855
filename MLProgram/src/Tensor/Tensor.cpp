// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Tensor/Tensor.h"

#include <MLProgram/MLModelError.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace MLProgram {

namespace {

// A cache line, and the widest vector register.
constexpr size_t alignment = 64;

} // namespace

int64_t elementCount(std::span<const int64_t> shape) noexcept
{
    int64_t count = 1;
    for (const int64_t dimension : shape)
        count *= dimension;
    return count;
}

size_t sizeOf(ElementType type) noexcept
{
    return type == ElementType::boolean ? sizeof(uint8_t) : sizeof(int32_t);
}

Tensor::Tensor(TensorType type)
    : type_(std::move(type))
{
    const size_t needed = static_cast<size_t>(elementCount(type_.shape)) * sizeOf(type_.element);
    const size_t size = std::max<size_t>(1, (needed + alignment - 1) / alignment) * alignment;
    void* const data = std::aligned_alloc(alignment, size);
    if (data == nullptr)
        throw MLModelError(MLModelError::Case::outOfMemory,
            "There is not enough memory for a tensor of " + std::to_string(needed) + " bytes.");
    std::memset(data, 0, size);
    storage_ = std::shared_ptr<void>(data, std::free);
}

} // namespace MLProgram
