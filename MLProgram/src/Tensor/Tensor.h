// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <boost/container/static_vector.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace MLProgram {

// Higher ranks do not occur in compiled programs; one that has them is refused.
constexpr size_t maximumRank = 8;

// No dimension of a tensor and no product of dimensions exceeds this; a program that has a larger one is refused.
// It keeps all index arithmetic in 64 bits free of overflow.
constexpr int64_t maximumElementCount = INT32_MAX;

using Shape = boost::container::static_vector<int64_t, maximumRank>;

// Product of the dimensions; 1 for rank 0.
int64_t elementCount(std::span<const int64_t> shape) noexcept;

// How values are held while a program runs. 16-bit and 32-bit floats of the program are both real (32-bit), its
// integers of every width integer (32-bit), its booleans boolean (one byte, 0 or 1).
enum class ElementType : uint8_t { real, integer, boolean };

size_t sizeOf(ElementType type) noexcept;

struct TensorType {
    ElementType element = ElementType::real;
    Shape shape;

    bool operator==(const TensorType&) const = default;
};

// A dense row-major tensor that somebody else owns. `data` is null while only the type is known, and only then: a
// known tensor without elements points somewhere too.
struct TensorView {
    TensorType type;
    void* data = nullptr;

    int64_t count() const noexcept { return elementCount(type.shape); }
    bool isKnown() const noexcept { return data != nullptr; }

    template <typename T> std::span<T> values() const
    {
        return { static_cast<T*>(data), static_cast<size_t>(count()) };
    }
    std::span<float> reals() const { return values<float>(); }
    std::span<int32_t> integers() const { return values<int32_t>(); }
    std::span<uint8_t> booleans() const { return values<uint8_t>(); }
};

// A tensor with storage of its own, 64-byte aligned, zero-filled.
class Tensor {
public:
    Tensor() = default;
    explicit Tensor(TensorType type); // throws MLModelError (outOfMemory)

    const TensorType& type() const noexcept { return type_; }
    TensorView view() const noexcept { return { type_, storage_.get() }; }

private:
    TensorType type_;
    std::shared_ptr<void> storage_;
};

} // namespace MLProgram
