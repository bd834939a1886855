// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/FileDescriptor.h>

#include <filesystem>
#include <string_view>

namespace PlatformSupport {

// A file that is gone with the object unless it has been moved to where it is wanted.
//
// It is locked while the object lives, so that what a killed process left in the folder is told from what is in use:
// the next temporary file in the folder clears that away. Only the user can read it (mode 0600). One thread at a time.
class TemporaryFile {
public:
    // In the folder, which is made with its ancestors if it is not there.
    // Errors: std::filesystem::filesystem_error
    explicit TemporaryFile(const std::filesystem::path& folder);
    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&&) = delete;
    ~TemporaryFile();

    const std::filesystem::path& path() const noexcept { return path_; }

    // Appends. Errors: std::filesystem::filesystem_error
    void write(std::string_view bytes);

    // Puts the file in the destination's place in one step, also where that is on another disk: whoever reads it finds
    // the old file or the whole new one. Errors: std::filesystem::filesystem_error; the file is then still here
    void moveTo(const std::filesystem::path& destination);

private:
    std::filesystem::path path_; // empty once it is moved
    FileDescriptor file_;
};

} // namespace PlatformSupport
