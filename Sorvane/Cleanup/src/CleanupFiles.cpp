// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/UserFolders.h>
#include <Sorvane/CleanupFiles.h>

#include <unistd.h>

#include <system_error>

namespace Sorvane {

namespace fs = std::filesystem;

const CleanupFiles& CleanupFiles::ofThisUser()
{
    static const CleanupFiles files { PlatformSupport::UserFolders::fromEnvironment().applicationSupport
        / "Sorvane/Cleanup/S1-mini-Q4" };
    return files;
}

bool CleanupFiles::areInstalled() const
{
    std::error_code ignored;
    return isExecutableFile(generator()) && isExecutableFile(tokeniser())
        && fs::file_size(weights(), ignored) == weightsSize;
}

bool isExecutableFile(const fs::path& path)
{
    std::error_code ignored;
    return fs::is_regular_file(path, ignored) && ::access(path.c_str(), X_OK) == 0;
}

} // namespace Sorvane
