// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Model/TestBundles.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace MLProgram {

std::filesystem::path testBundles()
{
    return TEST_BUNDLES; // from CMakeLists.txt
}

TemporaryBundle::TemporaryBundle(const std::map<std::string, std::string>& files)
{
    std::string pattern = std::filesystem::temp_directory_path() / "MLProgramTests.XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no temporary folder can be made");
    folder_ = pattern;
    std::filesystem::create_directories(path());
    for (const auto& [name, content] : files) {
        std::filesystem::create_directories((path() / name).parent_path());
        std::ofstream(path() / name, std::ios::binary) << content;
    }
}

TemporaryBundle::~TemporaryBundle()
{
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
}

} // namespace MLProgram
