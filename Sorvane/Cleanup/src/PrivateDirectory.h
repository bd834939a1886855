// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <filesystem>
#include <string_view>

namespace Sorvane {

// A directory that nobody else can enter, removed with everything in it when this object goes. A failure to remove it
// is not reported.
class PrivateDirectory {
public:
    // The parent exists and nothing of this name lies in it.
    //
    // Errors: std::filesystem::filesystem_error
    explicit PrivateDirectory(std::filesystem::path path);
    PrivateDirectory(const PrivateDirectory&) = delete;
    PrivateDirectory& operator=(const PrivateDirectory&) = delete;
    ~PrivateDirectory();

    const std::filesystem::path& path() const { return path_; }

    // Writes a new file that nobody else can read. Errors: std::filesystem::filesystem_error
    std::filesystem::path write(std::string_view name, std::string_view content) const;

private:
    std::filesystem::path path_;
};

} // namespace Sorvane
