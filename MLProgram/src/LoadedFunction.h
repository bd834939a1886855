// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Program/Program.h"

#include <MLProgram/MLModelDescription.h>

#include <filesystem>
#include <memory>
#include <string>

namespace MLProgram {

// One function of a bundle, read and described, not yet made ready to run.
struct LoadedFunction {
    std::shared_ptr<const Function> function;
    MLModelDescription description;
};

// Reads a bundle's program, and what metadata.json, or else coremldata.bin, says about it. `name` is the wanted
// function's; empty takes the default one.
//
// Errors: MLModelError (io), (invalidProgram), (unsupported); their texts do not name the bundle.
LoadedFunction loadFunction(const std::filesystem::path& bundle, const std::string& name);

} // namespace MLProgram
