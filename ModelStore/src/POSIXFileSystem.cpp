// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Descriptor.h"
#include "Pieces.h"

#include <ModelStore/ModelStoreError.h>
#include <ModelStore/POSIXFileSystem.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace ModelStore {

namespace {

constexpr mode_t directoryMode = 0755;

void require(bool succeeded, const std::string& call, const std::string& argument)
{
    if (!succeeded)
        throw ModelStoreError::io(call + "(" + argument + ")");
}

} // namespace

POSIXFileSystem::POSIXFileSystem(std::string cacheRoot)
    : cacheRoot_(std::move(cacheRoot))
{
}

bool POSIXFileSystem::exists(const std::string& path) const
{
    return ::access(path.c_str(), F_OK) == 0;
}

std::optional<int64_t> POSIXFileSystem::size(const std::string& path) const
{
    struct stat status { };
    if (::stat(path.c_str(), &status) != 0)
        return {};
    return status.st_size;
}

Bytes POSIXFileSystem::read(const std::string& path) const
{
    const Descriptor file(path, O_RDONLY);
    require(static_cast<bool>(file), "open", path);
    Bytes bytes;
    require(file.readAll(bytes), "read", path);
    return bytes;
}

void POSIXFileSystem::write(const std::string& path, const Bytes& bytes) const
{
    const Descriptor file(path, O_WRONLY | O_CREAT | O_TRUNC);
    require(static_cast<bool>(file), "create", path);
    require(file.writeAll(bytes), "write", path);
}

void POSIXFileSystem::makeDirectory(const std::string& path) const
{
    std::string prefix = path.starts_with('/') ? "/" : ".";
    for (const std::string_view name : piecesOf(path, '/')) {
        if (name.empty())
            continue;
        if (!prefix.ends_with('/'))
            prefix += '/';
        prefix += name;
        require(::mkdir(prefix.c_str(), directoryMode) == 0 || errno == EEXIST, "mkdir", prefix);
    }
}

void POSIXFileSystem::move(const std::string& from, const std::string& to) const
{
    ::unlink(to.c_str());
    require(::rename(from.c_str(), to.c_str()) == 0, "rename", from + " -> " + to);
}

void POSIXFileSystem::remove(const std::string& path) const
{
    ::unlink(path.c_str());
}

} // namespace ModelStore
