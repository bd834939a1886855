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
// ValueNotKnown when the value they need is not known yet. None of them allocates for ordinary sizes.
class Operands {
public:
    using List = boost::container::small_vector<TensorView, 4>;

    void add(std::string_view name, TensorView tensor);
    void add(std::string_view name, List tensors); // a variadic parameter, as the `values` of concat
    void add(std::string_view name, std::string_view text); // the text must outlive the operands

    // The opset the operation was written for (15 to 18 and later); some rules depend on it.
    int opset = 17;

    bool has(std::string_view name) const noexcept;
    const TensorView& tensor(std::string_view name) const;
    const TensorView* optionalTensor(std::string_view name) const noexcept;
    std::span<const TensorView> tensors(std::string_view name) const; // a lone tensor is a list of one

    // A one-element operand of any numeric type.
    int64_t integer(std::string_view name) const;
    int64_t integer(std::string_view name, int64_t otherwise) const;
    float real(std::string_view name, float otherwise) const;
    bool flag(std::string_view name, bool otherwise) const;
    std::string_view text(std::string_view name) const;
    std::string_view text(std::string_view name, std::string_view otherwise) const;

    // A vector operand of an integer type; the second form gives `otherwise` when it is absent.
    Shape integers(std::string_view name) const;
    std::optional<Shape> optionalIntegers(std::string_view name) const;

private:
    struct Operand {
        std::string_view name;
        List tensors;
        std::string_view text;
    };
    const Operand* find(std::string_view name) const noexcept;

    boost::container::small_vector<Operand, 8> operands_;
};

// Thrown by shape inference when the output's shape follows from a value that is not known yet.
struct ValueNotKnown { };

using TensorTypes = boost::container::small_vector<TensorType, 3>;

// The meaning of one operation of the program text, in plain 32-bit code.
struct OperationDefinition {
    std::string_view name;

    // Types of the outputs, in order. Throws MLModelError (invalidProgram) when the operands do not fit.
    TensorTypes (*infer)(const Operands& operands);

    // Computes the outputs, whose types are those that infer() gave. Outputs overlap no operand.
    void (*evaluate)(const Operands& operands, std::span<const TensorView> outputs);
};

// Null when there is no such operation.
const OperationDefinition* findOperation(std::string_view name) noexcept;

// Every operation there is, in alphabetical order.
std::span<const OperationDefinition> allOperations() noexcept;

} // namespace MLProgram
