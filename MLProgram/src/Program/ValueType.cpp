// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program/ValueType.h"

#include <algorithm>

namespace MLProgram {
namespace {

std::string dimensionText(int64_t dimension)
{
    return dimension == unknownDimension ? "?" : std::to_string(dimension);
}

std::string tensorText(const ValueType& type)
{
    const std::string scalar(nameOf(type.scalar));
    if (type.shape.empty())
        return scalar;
    std::string dimensions;
    for (const int64_t dimension : type.shape)
        dimensions += (dimensions.empty() ? "" : ", ") + dimensionText(dimension);
    return "tensor<" + scalar + ", [" + dimensions + "]>";
}

std::string joined(const std::vector<ValueType>& parts)
{
    std::string text;
    for (const ValueType& part : parts)
        text += (text.empty() ? "" : ", ") + description(part);
    return text;
}

} // namespace

bool ValueType::hasKnownShape() const noexcept
{
    return kind == Kind::tensor && std::find(shape.begin(), shape.end(), unknownDimension) == shape.end();
}

std::string description(const ValueType& type)
{
    switch (type.kind) {
    case ValueType::Kind::tensor:
        return tensorText(type);
    case ValueType::Kind::list:
        return "list<" + joined(type.parts) + ", " + dimensionText(type.length) + ">";
    case ValueType::Kind::tuple:
        return "tuple<" + joined(type.parts) + ">";
    case ValueType::Kind::dictionary:
        return "dict<" + joined(type.parts) + ">";
    case ValueType::Kind::state:
        return "state<" + joined(type.parts) + ">";
    }
    return {};
}

std::string description(const TensorType& type)
{
    const ScalarType scalar = type.element == ElementType::real ? ScalarType::float32
        : type.element == ElementType::boolean                  ? ScalarType::boolean
                                                                : ScalarType::int32;
    return description(ValueType { .scalar = scalar, .shape = type.shape });
}

bool admits(const ValueType& declared, const Shape& shape) noexcept
{
    return declared.kind == ValueType::Kind::tensor && declared.shape.size() == shape.size()
        && std::equal(shape.begin(), shape.end(), declared.shape.begin(),
            [](int64_t actual, int64_t known) { return known == unknownDimension || actual == known; });
}

} // namespace MLProgram
