// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Environment.h>
#include <PlatformSupport/UserFolders.h>

#include <pwd.h>
#include <unistd.h>

#include <string>

namespace PlatformSupport {

namespace {

namespace fs = std::filesystem;

fs::path folderNamedBy(const std::string& variable, const fs::path& otherwise)
{
    const fs::path folder = environmentVariable(variable).value_or("");
    return folder.is_absolute() ? folder : otherwise;
}

fs::path homeOfTheSystemsUser()
{
    const passwd* const user = ::getpwuid(::getuid());
    return user != nullptr ? user->pw_dir : "/";
}

} // namespace

UserFolders UserFolders::fromEnvironment()
{
    const fs::path home = folderNamedBy("HOME", homeOfTheSystemsUser());
    return {
        .home = home,
        .applicationSupport = folderNamedBy("XDG_DATA_HOME", home / ".local/share"),
        .caches = folderNamedBy("XDG_CACHE_HOME", home / ".cache"),
        .configuration = folderNamedBy("XDG_CONFIG_HOME", home / ".config"),
        .temporary = folderNamedBy("TMPDIR", "/tmp"),
    };
}

} // namespace PlatformSupport
