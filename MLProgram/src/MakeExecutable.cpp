// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "MakeExecutable.h"

#include "Interpreter/Interpreter.h"
#include "Plan/PlannedFunction.h"

#include <utility>

namespace MLProgram {

// Both ways compute in 32 bits throughout, which all units allow.
std::unique_ptr<Executable> makeExecutable(std::shared_ptr<const Function> function, MLComputeUnits)
{
    const auto interpret = [function] { return std::make_unique<Interpreter>(function); };
    return std::make_unique<PlannedFunction>(std::move(function), interpret);
}

} // namespace MLProgram
