// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "RunningInstance.h"

#include <PlatformSupport/Environment.h>
#include <PlatformSupport/UserFolders.h>

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace Sorvane {

namespace {

// The session's own folder, which goes with it; where there is none, the user's caches.
std::filesystem::path lockFile()
{
    const auto session = PlatformSupport::environmentVariable("XDG_RUNTIME_DIR");
    const std::filesystem::path folder = session && std::filesystem::path(*session).is_absolute()
        ? std::filesystem::path(*session)
        : PlatformSupport::UserFolders::fromEnvironment().caches;
    std::filesystem::create_directories(folder);
    return folder / "sorvane.lock";
}

} // namespace

AlreadyRunningError::AlreadyRunningError()
    : std::runtime_error("Sorvane is already running")
{
}

RunningInstance::RunningInstance()
    : lock_(::open(lockFile().c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600))
{
    if (!lock_.isOpen())
        throw std::system_error(errno, std::generic_category(), "cannot tell whether Sorvane is running");
    if (::flock(lock_.number(), LOCK_EX | LOCK_NB) != 0)
        throw AlreadyRunningError();
}

} // namespace Sorvane
