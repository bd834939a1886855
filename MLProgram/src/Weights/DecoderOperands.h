// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Program.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace MLProgram {

// What an operation that decodes weights is given and has to give.
class DecoderOperands {
public:
    DecoderOperands(const Function& function, const Operation& operation,
        const std::function<const Constant&(ValueIndex)>& constantOf);

    bool has(std::string_view parameter) const noexcept { return operation_.argument(parameter) != nullptr; }
    const Constant& constant(std::string_view parameter) const; // refuses when absent
    const Constant* optionalConstant(std::string_view parameter) const; // null when absent
    std::vector<float> reals(std::string_view parameter) const;
    int64_t integer(std::string_view parameter) const; // of a scalar

    // A dimension's index, counted from the end when negative.
    size_t axis(std::string_view parameter, size_t rank) const;

    // The dimensions that stand in a vector of integers.
    Shape shape(std::string_view parameter) const;

    // Zeroed bytes for output `index`; refuses unless the program declares it with this type and shape.
    std::vector<std::byte> storage(size_t index, ScalarType type, const Shape& shape) const;

    // Throws MLModelError (invalidProgram) unless `holds`.
    void require(bool holds, std::string_view fault) const;

private:
    const Function& function_;
    const Operation& operation_;
    const std::function<const Constant&(ValueIndex)>& constantOf_;
};

// One for each output.
using DecodedWeights = std::vector<Constant>;

// The operations, by name without "constexpr_". Those that come in two generations tell them apart by the
// parameter `shape`, which only the older one has.
DecodedWeights affineDequantize(const DecoderOperands& operands);
DecodedWeights blockwiseShiftScale(const DecoderOperands& operands);
DecodedWeights cast(const DecoderOperands& operands);
DecodedWeights lutToDense(const DecoderOperands& operands);
DecodedWeights lutToSparse(const DecoderOperands& operands);
DecodedWeights sparseBlockwiseShiftScale(const DecoderOperands& operands);
DecodedWeights sparseToDense(const DecoderOperands& operands);

} // namespace MLProgram
