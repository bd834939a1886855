// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <TemporaryFolder.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

// What a finished program left behind.
struct Outcome {
    int status = -1; // exit status; -1 when a signal ended it
    std::string output;
    std::string errors;
};

// Runs the built sorvane with these arguments, with standard input and the environment of the test, and
// OSTREL_MODEL_DIRECTORY set to the small model unless `environment` says otherwise.
Outcome runSorvane(const std::vector<std::string>& arguments, std::map<std::string, std::string> environment = {});

using TestSupport::TemporaryFolder;
