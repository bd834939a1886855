// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/ScalarType.h"
#include "Tensor/Tensor.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MLProgram {

// A dimension that the program text leaves open ("?"), or the open length of a list.
constexpr int64_t unknownDimension = -1;

// The declared type of a value. A scalar is a tensor of rank 0.
struct ValueType {
    enum class Kind : uint8_t { tensor, list, tuple, dictionary, state };

    Kind kind = Kind::tensor;

    ScalarType scalar = ScalarType::float32; // of a tensor
    Shape shape {}; // of a tensor; may hold unknownDimension

    // list and state: one, of the elements and of the tensor kept; tuple: each member's; dictionary: key and value.
    std::vector<ValueType> parts {};
    int64_t length = unknownDimension; // of a list

    bool operator==(const ValueType&) const = default;

    bool isText() const noexcept { return kind == Kind::tensor && scalar == ScalarType::string; }
    bool hasKnownShape() const noexcept;
};

// As the program text of the newer spelling has it: "tensor<fp16, [1, ?]>", "int32".
std::string description(const ValueType& type);
std::string description(const TensorType& type); // as "tensor<fp32, [1, 4]>"

// True when a tensor of this shape is one of the declared type: the rank and every known dimension agree.
bool admits(const ValueType& declared, const Shape& shape) noexcept;

} // namespace MLProgram
