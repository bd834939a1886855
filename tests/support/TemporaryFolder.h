// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace TestSupport {

// A folder for the files of one test, which is gone with everything in it after that.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path())
    {
        std::string pattern = (parent / "sorvane-test-XXXXXX").string();
        if (!::mkdtemp(pattern.data()))
            throw std::runtime_error("no temporary folder can be made");
        path_ = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

    std::filesystem::path write(const std::filesystem::path& name, std::string_view bytes) const
    {
        std::ofstream(path_ / name, std::ios::binary) << bytes;
        return path_ / name;
    }

    std::filesystem::path write(const std::filesystem::path& name, std::span<const uint8_t> bytes) const
    {
        return write(name, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    }

    std::string contents(const std::filesystem::path& name) const
    {
        std::ifstream file(path_ / name, std::ios::binary);
        return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
    }

    // Of what lies directly in it.
    std::set<std::string> names() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            names.insert(entry.path().filename());
        return names;
    }

private:
    std::filesystem::path path_;
};

} // namespace TestSupport
