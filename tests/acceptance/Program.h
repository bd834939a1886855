// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

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

// A folder for one test's files, removed with everything in it.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};
