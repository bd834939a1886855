// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <filesystem>

namespace PlatformSupport {

// Where the desktop keeps what belongs to one user. All are absolute; none is created here.
struct UserFolders {
    std::filesystem::path home;
    std::filesystem::path applicationSupport; // $XDG_DATA_HOME, else ".local/share" at home
    std::filesystem::path caches; // $XDG_CACHE_HOME, else ".cache" at home
    std::filesystem::path configuration; // $XDG_CONFIG_HOME, else ".config" at home
    std::filesystem::path temporary; // $TMPDIR, else "/tmp"

    // A variable that holds no absolute path counts as not set. Without a home in the environment it is the one in
    // the system's list of users.
    static UserFolders fromEnvironment();
};

} // namespace PlatformSupport
