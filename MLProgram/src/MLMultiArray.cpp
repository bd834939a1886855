// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <MLProgram/MLModelError.h>
#include <MLProgram/MLMultiArray.h>
#include <PlatformSupport/Precondition.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

namespace MLProgram {
namespace {

using PlatformSupport::Float16;

// A cache line, and the widest vector register.
constexpr size_t alignment = 64;

int64_t checkedCount(const std::vector<int64_t>& shape)
{
    bool isEmpty = false;
    int64_t count = 1;
    for (const int64_t dimension : shape) {
        isEmpty = isEmpty || dimension == 0;
        const bool overflows = dimension != 0 && __builtin_mul_overflow(count, dimension, &count);
        // The tensors of the runtime count their elements in 31 bits.
        if (dimension < 0 || overflows || count > std::numeric_limits<int32_t>::max())
            throw MLModelError(MLModelError::Case::invalidFeature, "The shape of the array is negative or too large.");
    }
    return isEmpty ? 0 : count;
}

template <typename T> constexpr MLMultiArrayDataType dataTypeOf()
{
    if constexpr (std::is_same_v<T, Float16>)
        return MLMultiArrayDataType::float16;
    else if constexpr (std::is_same_v<T, float>)
        return MLMultiArrayDataType::float32;
    else if constexpr (std::is_same_v<T, double>)
        return MLMultiArrayDataType::float64;
    else if constexpr (std::is_same_v<T, int32_t>)
        return MLMultiArrayDataType::int32;
    else
        return MLMultiArrayDataType::int8;
}

} // namespace

size_t sizeOf(MLMultiArrayDataType type) noexcept
{
    switch (type) {
    case MLMultiArrayDataType::int8:
        return 1;
    case MLMultiArrayDataType::float16:
        return 2;
    case MLMultiArrayDataType::float64:
        return 8;
    case MLMultiArrayDataType::float32:
    case MLMultiArrayDataType::int32:
        break;
    }
    return 4;
}

MLMultiArray::MLMultiArray(std::vector<int64_t> shape, MLMultiArrayDataType dataType)
    : shape_(std::move(shape))
    , dataType_(dataType)
    , count_(checkedCount(shape_))
{
    const size_t needed = static_cast<size_t>(count_) * sizeOf(dataType);
    const size_t size = (needed / alignment + 1) * alignment; // never nothing
    storage_.reset(static_cast<std::byte*>(std::aligned_alloc(alignment, size)));
    if (storage_ == nullptr)
        throw MLModelError(MLModelError::Case::outOfMemory,
            "There is not enough memory for an array of " + std::to_string(needed) + " bytes.");
    std::memset(storage_.get(), 0, size);
}

void MLMultiArray::Free::operator()(std::byte* bytes) const noexcept
{
    std::free(bytes);
}

template <typename T> std::span<T> MLMultiArray::elements()
{
    PlatformSupport::precondition(dataTypeOf<T>() == dataType_, "an array is read as the type that it holds");
    return { reinterpret_cast<T*>(storage_.get()), static_cast<size_t>(count_) };
}

template <typename T> std::span<const T> MLMultiArray::elements() const
{
    PlatformSupport::precondition(dataTypeOf<T>() == dataType_, "an array is read as the type that it holds");
    return { reinterpret_cast<const T*>(storage_.get()), static_cast<size_t>(count_) };
}

template std::span<Float16> MLMultiArray::elements();
template std::span<float> MLMultiArray::elements();
template std::span<double> MLMultiArray::elements();
template std::span<int32_t> MLMultiArray::elements();
template std::span<int8_t> MLMultiArray::elements();
template std::span<const Float16> MLMultiArray::elements() const;
template std::span<const float> MLMultiArray::elements() const;
template std::span<const double> MLMultiArray::elements() const;
template std::span<const int32_t> MLMultiArray::elements() const;
template std::span<const int8_t> MLMultiArray::elements() const;

} // namespace MLProgram
