// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/ScalarType.h"
#include "Tensor/Tensor.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace MLProgram {

// A value that is known when the program is loaded, in the form that the file holds it in: row-major, 16-bit
// floats not widened, elements below 8 bits packed without gaps, element i in bits [i*b, i*b+b) counted from
// the least significant bit of the first byte.
//
// Copies share the bytes, which are aligned for their element type. Those of a weight are the mapped file's.
class Constant {
public:
    // Takes ownership of `bytes`, or keeps `owner` alive, who maps them from a file. There are exactly as many as
    // checkedByteCount() says for the type and shape; anything else ends the process.
    Constant(ScalarType type, const Shape& shape, std::vector<std::byte> bytes);
    Constant(ScalarType type, const Shape& shape, std::span<const std::byte> bytes, std::shared_ptr<const void> owner);

    // A string of rank 0.
    explicit Constant(std::string text);

    ScalarType scalarType() const noexcept { return type_; }
    const Shape& shape() const noexcept { return shape_; }
    int64_t count() const noexcept { return elementCount(shape_); }
    std::span<const std::byte> bytes() const noexcept { return bytes_; }

    // Lets the system take back the memory of a mapped weight that has been read and will hardly be read again: its
    // pages come from the file once more when it is. Other constants stay as they are.
    void releasePages() const noexcept;

    bool isText() const noexcept { return type_ == ScalarType::string; }
    std::string_view text() const noexcept; // empty unless isText()

    // The type that the value has while a program runs.
    TensorType tensorType() const { return { elementTypeOf(type_), shape_ }; }

    // The elements in the runtime's 32-bit form, exactly, save that 64-bit floats are rounded and integers
    // beyond 32 bits become the nearest that fits. Not for strings.
    Tensor widened() const; // throws MLModelError (outOfMemory)

    // The same into storage of the caller's, of tensorType().
    void widenInto(const TensorView& to) const;

private:
    ScalarType type_;
    Shape shape_;
    std::span<const std::byte> bytes_;
    std::shared_ptr<const void> owner_;
    bool isMapped_ = false;
};

} // namespace MLProgram
