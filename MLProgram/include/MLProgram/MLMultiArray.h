// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Float16.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace MLProgram {

enum class MLMultiArrayDataType { float16, float32, float64, int32, int8 };

// Bytes of one element.
size_t sizeOf(MLMultiArrayDataType type) noexcept;

// A tensor that crosses the runtime's border: dense, row-major, zero-filled when made, 64-byte aligned.
//
// It is handed about by shared pointer; features and output backings refer to the same storage for as long
// as they live. Not synchronised: nobody writes to an array while a prediction uses it.
class MLMultiArray {
public:
    // A shape of no dimensions is one element; a dimension of 0 is legal and gives no elements.
    // Errors: MLModelError (invalidFeature) for a negative or absurdly large shape, (outOfMemory).
    MLMultiArray(std::vector<int64_t> shape, MLMultiArrayDataType dataType);

    const std::vector<int64_t>& shape() const noexcept { return shape_; }
    MLMultiArrayDataType dataType() const noexcept { return dataType_; }
    int64_t count() const noexcept { return count_; } // product of the shape

    void* dataPointer() noexcept { return storage_.get(); }
    const void* dataPointer() const noexcept { return storage_.get(); }

    // The elements as T, which must be the C++ type of dataType(); anything else ends the process.
    // float16 is PlatformSupport::Float16, float32 float, float64 double, int32 int32_t, int8 int8_t.
    template <typename T> std::span<T> elements();
    template <typename T> std::span<const T> elements() const;

private:
    struct Free {
        void operator()(std::byte* bytes) const noexcept;
    };

    std::vector<int64_t> shape_;
    MLMultiArrayDataType dataType_;
    int64_t count_ = 0;
    std::unique_ptr<std::byte, Free> storage_;
};

} // namespace MLProgram
