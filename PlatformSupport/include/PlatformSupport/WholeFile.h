// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace PlatformSupport {

// Files that are read and written as a whole. Any thread.

// The file's bytes. A pipe, a device or a folder in its place is refused and never waited for; the file may change or
// shrink meanwhile.
//
// Errors: std::filesystem::filesystem_error with the system's code; std::errc::file_too_large beyond `limit` bytes
std::string readFile(const std::filesystem::path& path, size_t limit);

// What a power failure may undo. Neither ever leaves half a file.
enum class Durability {
    content, // perhaps the replacement as a whole: the old file is back. For what can be made again
    replacement, // nothing, once replaceFile() has returned
};

// Puts a file with these bytes, the pieces one after the other, in the place of the file or link at the path, or where
// nothing was. Only the user can read it (mode 0600).
//
// The bytes first go to a hidden file beside it, which takes the path's name in one step once they are on the disk. So
// whoever reads the path finds the old file or the new one, also when this process or the system ends in between.
//
// Errors: std::filesystem::filesystem_error with the system's code. The old file is still there, and the hidden one is
//         gone; only if the folder itself cannot be brought to the disk is the new file in place.
void replaceFile(const std::filesystem::path& path, std::span<const std::string_view> pieces, Durability durability);
void replaceFile(const std::filesystem::path& path, std::string_view bytes, Durability durability);

// Whether a file of this name is such a hidden file: left behind by a process that was ended, if none writes now.
bool isUnfinishedReplacement(std::string_view name);

// Brings the folder's list of files to the disk, where the file system offers it.
//
// Errors: std::filesystem::filesystem_error with the system's code
void synchroniseFolder(const std::filesystem::path& folder);

} // namespace PlatformSupport
