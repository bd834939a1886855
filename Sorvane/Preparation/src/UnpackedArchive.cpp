// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "UnpackedArchive.h"

#include <algorithm>
#include <system_error>

namespace Sorvane {

namespace {

namespace fs = std::filesystem;

bool isWithin(const fs::path& path, const fs::path& root)
{
    return std::ranges::mismatch(root, path).in1 == root.end();
}

// A link is relative, so that it still leads there when the folder is moved. One that leads nowhere does no harm.
bool leadsInside(const fs::path& link, const fs::path& root)
{
    std::error_code failure;
    const fs::path target = fs::read_symlink(link, failure);
    if (failure || target.is_absolute())
        return false;
    const fs::path resolved = fs::weakly_canonical(link.parent_path() / target, failure);
    return !failure && isWithin(resolved, root);
}

bool isHarmless(const fs::directory_entry& entry, const fs::path& root)
{
    switch (entry.symlink_status().type()) {
    case fs::file_type::regular:
    case fs::file_type::directory:
        return true;
    case fs::file_type::symlink:
        return leadsInside(entry.path(), root);
    default:
        return false; // a device, a pipe, a socket
    }
}

} // namespace

bool holdsOnlyFolder(const fs::path& staging, const std::string& folder)
{
    const bool isAlone = std::ranges::all_of(
        fs::directory_iterator(staging), [&](const auto& entry) { return entry.path().filename() == folder; });
    const fs::path path = staging / folder;
    if (!isAlone || !fs::is_directory(fs::symlink_status(path)))
        return false;
    const fs::path root = fs::canonical(path);
    return std::ranges::all_of(
        fs::recursive_directory_iterator(path), [&](const auto& entry) { return isHarmless(entry, root); });
}

} // namespace Sorvane
