// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Model/TestBundles.h"

#include <fstream>

namespace MLProgram {

std::filesystem::path testBundles()
{
    return TEST_BUNDLES; // from CMakeLists.txt
}

TemporaryBundle::TemporaryBundle(const std::map<std::string, std::string>& files)
{
    std::filesystem::create_directories(path());
    for (const auto& [name, content] : files) {
        std::filesystem::create_directories((path() / name).parent_path());
        std::ofstream(path() / name, std::ios::binary) << content;
    }
}

} // namespace MLProgram
