// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Tensor/Tensor.h"

#include <boost/container/small_vector.hpp>

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace MLProgram {

// The operands of one operation by parameter name, as shape inference and the reference see them. An operand
// whose value is not known yet (it is computed when the program runs) has a type and no data.
//
// The readers throw MLModelError (invalidProgram) when a required operand is absent or of the wrong kind, and
// ValueNotKnown when the value they need is not known yet. None of them allocates.
class Operands {
public:
    using List = boost::container::small_vector<TensorView, 4>;

    // `operation` is the name that errors mention; it outlives the operands. `opset` is the one that the operation
    // was written for (15 to 18 and later); some rules depend on it.
    explicit Operands(std::string_view operation, int opset = 17)
        : operation_(operation)
        , opset_(opset)
    {
    }

    // Names and texts must outlive the operands.
    void add(std::string_view name, TensorView tensor);
    void add(std::string_view name, List tensors); // a variadic parameter, as the `values` of concat
    void add(std::string_view name, std::string_view text);

    std::string_view operation() const noexcept { return operation_; }
    int opset() const noexcept { return opset_; }

    bool has(std::string_view name) const noexcept;
    const TensorView& tensor(std::string_view name) const;
    const TensorView* optionalTensor(std::string_view name) const; // null when absent
    std::span<const TensorView> tensors(std::string_view name) const; // a lone tensor is a list of one

    // A one-element operand of any type. A real number read as an integer loses its fraction.
    int64_t integer(std::string_view name) const;
    int64_t integer(std::string_view name, int64_t otherwise) const;
    float real(std::string_view name) const;
    float real(std::string_view name, float otherwise) const;
    bool flag(std::string_view name, bool otherwise) const;
    std::string_view text(std::string_view name) const;
    std::string_view text(std::string_view name, std::string_view otherwise) const;

    // A vector operand of integers or booleans; a scalar is a vector of one.
    std::span<const int32_t> integers(std::string_view name) const;
    std::optional<std::span<const int32_t>> optionalIntegers(std::string_view name) const;
    std::optional<std::span<const uint8_t>> optionalFlags(std::string_view name) const;

    // Throws MLModelError (invalidProgram): the operation's name, then the fault.
    [[noreturn]] void refuse(std::string_view fault) const;

    // Refuses unless `holds`.
    void require(bool holds, std::string_view fault) const
    {
        if (!holds) [[unlikely]]
            refuse(fault);
    }

private:
    struct Operand {
        std::string_view name;
        List tensors;
        std::string_view text;
        bool isText = false;
    };
    const Operand* find(std::string_view name) const noexcept;
    const Operand& get(std::string_view name) const;
    double scalar(std::string_view name) const;

    std::string_view operation_;
    int opset_;
    boost::container::small_vector<Operand, 8> operands_;
};

// Thrown by shape inference when the output's shape follows from a value that is not known yet.
struct ValueNotKnown { };

using TensorTypes = boost::container::small_vector<TensorType, 3>;

// The meaning of one operation of the program text, in plain 32-bit code: every sum is taken from left to right in
// 32-bit floats. It is what faster code is tested against, and what runs where there is none.
struct OperationDefinition {
    std::string_view name;

    // Types of the outputs, in order. Throws MLModelError (invalidProgram) when the operands do not fit together,
    // and ValueNotKnown. No operand has a dimension or a count above maximumElementCount; neither has an output.
    TensorTypes (*infer)(const Operands& operands);

    // Computes the outputs, whose types are those that infer() gave for the same operands. All values are known,
    // and outputs overlap no operand. Nothing is allocated, but for scratch rows that a thread keeps for its next
    // call (argsort, topk, lstm, gru, rnn, scaled_dot_product_attention).
    void (*evaluate)(const Operands& operands, std::span<const TensorView> outputs);
};

// Null when there is no such operation.
const OperationDefinition* findOperation(std::string_view name) noexcept;

// Every operation there is, in alphabetical order.
std::span<const OperationDefinition> allOperations() noexcept;

} // namespace MLProgram
