// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Weights/DecoderOperands.h"

#include "Program/ElementCodec.h"

#include <MLProgram/MLModelError.h>

#include <string>

namespace MLProgram {

DecoderOperands::DecoderOperands(
    const Function& function, const Operation& operation, const std::function<const Constant&(ValueIndex)>& constantOf)
    : function_(function)
    , operation_(operation)
    , constantOf_(constantOf)
{
}

const Constant& DecoderOperands::constant(std::string_view parameter) const
{
    const Constant* const found = optionalConstant(parameter);
    require(found != nullptr, std::string(parameter) + " is missing");
    return *found;
}

const Constant* DecoderOperands::optionalConstant(std::string_view parameter) const
{
    const Argument* const argument = operation_.argument(parameter);
    if (argument == nullptr)
        return nullptr;
    require(argument->values.size() == 1, std::string(parameter) + " is not one value");
    return &constantOf_(argument->values.front());
}

std::vector<float> DecoderOperands::reals(std::string_view parameter) const
{
    const Constant& found = constant(parameter);
    require(!found.isText(), std::string(parameter) + " is no number");
    std::vector<float> values(static_cast<size_t>(found.count()));
    readReals(found.scalarType(), found.bytes(), 0, values);
    return values;
}

int64_t DecoderOperands::integer(std::string_view parameter) const
{
    const Constant& found = constant(parameter);
    require(found.count() == 1 && isInteger(found.scalarType()), std::string(parameter) + " is not one integer");
    int32_t value = 0;
    readIntegers(found.scalarType(), found.bytes(), 0, { &value, 1 });
    return value;
}

size_t DecoderOperands::axis(std::string_view parameter, size_t rank) const
{
    int64_t value = integer(parameter);
    if (value < 0)
        value += static_cast<int64_t>(rank);
    require(value >= 0 && value < static_cast<int64_t>(rank), std::string(parameter) + " is out of range");
    return static_cast<size_t>(value);
}

Shape DecoderOperands::shape(std::string_view parameter) const
{
    const Constant& found = constant(parameter);
    require(isInteger(found.scalarType()) && found.count() <= static_cast<int64_t>(maximumRank),
        std::string(parameter) + " is no shape");
    Shape dimensions(static_cast<size_t>(found.count()));
    for (size_t i = 0; i < dimensions.size(); ++i) {
        int32_t dimension = 0;
        readIntegers(found.scalarType(), found.bytes(), i, { &dimension, 1 });
        dimensions[i] = dimension;
    }
    return dimensions;
}

std::vector<std::byte> DecoderOperands::storage(size_t index, ScalarType type, const Shape& shape) const
{
    require(index < operation_.outputs.size(), "too few outputs are declared");
    const ValueType& declared = function_.values[operation_.outputs[index]].type;
    require(declared.kind == ValueType::Kind::tensor && declared.scalar == type && admits(declared, shape),
        "the output is declared as " + description(declared) + " and is "
            + description(ValueType { .scalar = type, .shape = shape }));
    const auto count = checkedElementCount(shape);
    require(count && *count <= maximumElementCount, "the output has too many elements");
    return std::vector<std::byte>(static_cast<size_t>(checkedByteCount(type, *count).value()));
}

void DecoderOperands::require(bool holds, std::string_view fault) const
{
    if (!holds)
        throw MLModelError(
            MLModelError::Case::invalidProgram, place(operation_) + ": " + operation_.name + ": " + std::string(fault));
}

} // namespace MLProgram
