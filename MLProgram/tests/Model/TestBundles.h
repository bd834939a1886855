// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <TemporaryFolder.h>

#include <filesystem>
#include <map>
#include <string>

namespace MLProgram {

// The folder of the bundles that the tests load.
std::filesystem::path testBundles();

// A bundle of the test's own, in a temporary folder that goes with the object.
class TemporaryBundle {
public:
    // The files by their names within the bundle; folders are made as needed.
    explicit TemporaryBundle(const std::map<std::string, std::string>& files = {});

    std::filesystem::path path() const { return folder_ / "stage.mlmodelc"; }

private:
    TestSupport::TemporaryFolder folder_;
};

} // namespace MLProgram
