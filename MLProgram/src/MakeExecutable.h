// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Executable.h"
#include "Program/Program.h"

#include <MLProgram/MLModelConfiguration.h>

#include <memory>

namespace MLProgram {

// Makes a function ready to run, in the fastest way there is for it within the precision that the units allow.
//
// The function has passed checkSupport().
// Errors: MLModelError (invalidProgram) when its statements do not fit their operands; (outOfMemory).
std::unique_ptr<Executable> makeExecutable(std::shared_ptr<const Function> function, MLComputeUnits units);

} // namespace MLProgram
