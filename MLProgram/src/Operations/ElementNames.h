// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Operations/Operation.h"

#include <cstdint>
#include <string_view>

namespace MLProgram {

// An element type as a program spells it in a text operand ("fp16", "uint8"), with the range of its integers.
// fp16 is held in 32 bits here, unrounded.
struct NamedElement {
    std::string_view name;
    ElementType element = ElementType::real;
    int32_t lowest = 0;
    int32_t highest = 0;

    // Toward zero, and to the nearest bound when out of range; NaN gives 0.
    int32_t saturated(double value) const noexcept;
};

// The type that the text operand `name` tells; `otherwise` when it is absent. Refused when there is no such type.
NamedElement elementNamed(const Operands& operands, std::string_view name);
NamedElement elementNamed(const Operands& operands, std::string_view name, std::string_view otherwise);

// The same, where only integers make sense.
NamedElement integerNamed(const Operands& operands, std::string_view name, std::string_view otherwise);

} // namespace MLProgram
