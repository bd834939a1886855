// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/FileSystem.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>

namespace ModelStore {

inline Bytes bytesOf(std::string_view text)
{
    return { text.begin(), text.end() };
}

// A directory of its own for the running test, empty.
inline std::string freshDirectory()
{
    const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string("store-") + test->test_suite_name() + "." + test->name();
    std::ranges::replace(name, '/', '-');
    const auto path = std::filesystem::path(testing::TempDir()) / name;
    std::filesystem::remove_all(path);
    std::filesystem::create_directories(path);
    return path.string();
}

} // namespace ModelStore
