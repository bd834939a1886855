// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Buffer.h"

#include <algorithm>

namespace Ostrel {

using PlatformSupport::Float16;

Buffer::Buffer(std::vector<int64_t> shape)
    : array_(std::make_shared<MLProgram::MLMultiArray>(std::move(shape), MLProgram::MLMultiArrayDataType::float16))
    , values_(array_->elements<Float16>())
{
}

std::span<Float16> Buffer::slice(size_t index) const
{
    const size_t width = values_.size() / static_cast<size_t>(array_->shape().front());
    return values_.subspan(index * width, width);
}

void Buffer::fill(Float16 value) const
{
    std::ranges::fill(values_, value);
}

} // namespace Ostrel
