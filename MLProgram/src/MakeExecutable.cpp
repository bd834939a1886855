// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "MakeExecutable.h"

#include "Interpreter/Interpreter.h"

#include <utility>

namespace MLProgram {

// The interpreter computes in 32 bits throughout, which all units allow.
std::unique_ptr<Executable> makeExecutable(std::shared_ptr<const Function> function, MLComputeUnits)
{
    return std::make_unique<Interpreter>(std::move(function));
}

} // namespace MLProgram
