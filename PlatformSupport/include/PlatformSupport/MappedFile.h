// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>

namespace PlatformSupport {

// The bytes of a file, mapped into memory for reading: pages come in as they are touched, and all who map the
// same file share them.
//
// The bytes stay where they are for the object's life, also when it is moved. The file must not be shortened
// while it is mapped; it may be removed or replaced by another. Any thread may read.
class MappedFile {
public:
    // Errors: std::filesystem::filesystem_error when the file cannot be opened, is no regular file, or cannot be
    //         mapped
    explicit MappedFile(const std::filesystem::path& path);
    ~MappedFile();
    MappedFile(MappedFile&& other) noexcept;
    MappedFile& operator=(MappedFile&& other) noexcept;

    std::span<const std::byte> bytes() const noexcept { return bytes_; }

private:
    std::span<const std::byte> bytes_; // empty for an empty file, which cannot be mapped
};

} // namespace PlatformSupport
