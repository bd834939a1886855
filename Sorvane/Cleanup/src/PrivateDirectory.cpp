// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PrivateDirectory.h"

#include <PlatformSupport/FileDescriptor.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace Sorvane {

namespace {

namespace fs = std::filesystem;

constexpr mode_t directoryMode = 0700;
constexpr mode_t fileMode = 0600;

[[noreturn]] void fail(const char* what, const fs::path& path)
{
    throw fs::filesystem_error(what, path, std::error_code(errno, std::generic_category()));
}

} // namespace

// The mode is set once more since a process may mask it away when it creates something.
PrivateDirectory::PrivateDirectory(fs::path path)
    : path_(std::move(path))
{
    if (::mkdir(path_.c_str(), directoryMode) != 0 || ::chmod(path_.c_str(), directoryMode) != 0)
        fail("cannot create directory", path_);
}

PrivateDirectory::~PrivateDirectory()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

fs::path PrivateDirectory::write(std::string_view name, std::string_view content) const
{
    fs::path path = path_ / name;
    const PlatformSupport::FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, fileMode));
    if (!file.isOpen() || ::fchmod(file.number(), fileMode) != 0)
        fail("cannot create file", path);
    while (!content.empty()) {
        const ssize_t written = ::write(file.number(), content.data(), content.size());
        if (written < 0 && errno != EINTR)
            fail("cannot write file", path);
        content.remove_prefix(written > 0 ? static_cast<size_t>(written) : 0);
    }
    return path;
}

} // namespace Sorvane
