// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Program/Program.h"

#include <algorithm>

namespace MLProgram {

const Argument* Operation::argument(std::string_view parameter) const noexcept
{
    const auto found = std::find_if(
        arguments.begin(), arguments.end(), [&](const Argument& candidate) { return candidate.name == parameter; });
    return found == arguments.end() ? nullptr : &*found;
}

std::string place(const Operation& operation)
{
    return "model.mil, line " + std::to_string(operation.line);
}

const Function* Program::function(std::string_view name) const noexcept
{
    const auto found = std::find_if(
        functions.begin(), functions.end(), [&](const Function& candidate) { return candidate.name == name; });
    return found == functions.end() ? nullptr : &*found;
}

} // namespace MLProgram
