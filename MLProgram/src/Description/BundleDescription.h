// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <MLProgram/MLModelDescription.h>

#include <map>
#include <string>

namespace MLProgram {

// What the files beside the program say about it.
struct BundleDescription {
    bool isProgram = true; // not a pipeline or another kind of model

    // By function name; a model with one function has it under the empty name.
    std::map<std::string, MLModelDescription> functions;
    std::string defaultFunctionName; // empty unless there are several

    // That of the function, or of the only one; null when there is none.
    const MLModelDescription* function(const std::string& name) const
    {
        const auto found = functions.find(name);
        if (found != functions.end())
            return &found->second;
        const auto only = functions.find(std::string());
        return only == functions.end() ? nullptr : &only->second;
    }
};

} // namespace MLProgram
