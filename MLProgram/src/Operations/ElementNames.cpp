// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Operations/ElementNames.h"

#include "Operations/Numbers.h"

#include <algorithm>
#include <string>

namespace MLProgram {

namespace {

constexpr NamedElement elements[] = {
    { "fp16", ElementType::real, 0, 0 },
    { "fp32", ElementType::real, 0, 0 },
    { "bool", ElementType::boolean, 0, 1 },
    { "int8", ElementType::integer, INT8_MIN, INT8_MAX },
    { "uint8", ElementType::integer, 0, UINT8_MAX },
    { "int16", ElementType::integer, INT16_MIN, INT16_MAX },
    { "uint16", ElementType::integer, 0, UINT16_MAX },
    { "int32", ElementType::integer, INT32_MIN, INT32_MAX },
};

NamedElement findElement(const Operands& operands, std::string_view text)
{
    const auto* const found = std::ranges::find(elements, text, &NamedElement::name);
    if (found == std::end(elements))
        operands.refuse("the element type \"" + std::string(text) + "\" is unknown");
    return *found;
}

} // namespace

int32_t NamedElement::saturated(double value) const noexcept
{
    return std::clamp(MLProgram::saturated<int32_t>(value), lowest, highest);
}

NamedElement elementNamed(const Operands& operands, std::string_view name)
{
    return findElement(operands, operands.text(name));
}

NamedElement elementNamed(const Operands& operands, std::string_view name, std::string_view otherwise)
{
    return findElement(operands, operands.text(name, otherwise));
}

NamedElement integerNamed(const Operands& operands, std::string_view name, std::string_view otherwise)
{
    const NamedElement named = elementNamed(operands, name, otherwise);
    operands.require(named.element == ElementType::integer, "indices must be of an integer type");
    return named;
}

} // namespace MLProgram
