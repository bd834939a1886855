// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/CleanupFiles.h>

#include <filesystem>
#include <fstream>

namespace TestSupport {

// Installs the stand-ins for the cleanup's tools, and weights of the right size that are all holes. Who includes this
// is built with CLEANUP_TOOLS_DIRECTORY.
inline void installCleanupStandIns(const Sorvane::CleanupFiles& files)
{
    std::filesystem::create_directories(files.runtime());
    for (const auto& tool : { files.generator(), files.tokeniser() })
        std::filesystem::create_symlink(std::filesystem::path(CLEANUP_TOOLS_DIRECTORY) / tool.filename(), tool);
    std::ofstream(files.weights()).close();
    std::filesystem::resize_file(files.weights(), Sorvane::cleanupWeightsSize);
}

} // namespace TestSupport
