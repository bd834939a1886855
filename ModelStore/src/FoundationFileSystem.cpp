// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Descriptor.h"

#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/ModelStoreError.h>
#include <ModelStore/SHA256.h>
#include <PlatformSupport/UserFolders.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <utility>

namespace ModelStore {

namespace {

namespace fs = std::filesystem;

constexpr size_t pieceSize = size_t { 1 } << 20; // of a file that is hashed

// In words for the user: 'The file “/a/b” could not be read: Permission denied.'
[[noreturn]] void fail(
    const std::string& what, const std::string& path, const std::string& done, const std::error_code& error)
{
    throw ModelStoreError::io("The " + what + " “" + path + "” could not be " + done + ": " + error.message() + ".");
}

std::error_code lastError()
{
    return { errno, std::generic_category() };
}

void rename(const std::string& from, const std::string& to, const std::string& done)
{
    std::error_code error;
    fs::rename(from, to, error);
    if (error)
        fail("file", to, done, error);
}

} // namespace

FoundationFileSystem::FoundationFileSystem(std::optional<std::string> cacheRoot)
    : cacheRoot_(std::move(cacheRoot))
{
    if (cacheRoot_ && cacheRoot_->empty())
        cacheRoot_.reset();
}

bool FoundationFileSystem::exists(const std::string& path) const
{
    std::error_code ignored;
    return fs::exists(path, ignored);
}

std::optional<int64_t> FoundationFileSystem::size(const std::string& path) const
{
    std::error_code error;
    const uintmax_t size = fs::file_size(path, error);
    return error ? std::nullopt : std::optional(static_cast<int64_t>(size));
}

Bytes FoundationFileSystem::read(const std::string& path) const
{
    const Descriptor file(path, O_RDONLY);
    if (!file)
        fail("file", path, "read", lastError());
    Bytes bytes;
    if (!file.readAll(bytes))
        fail("file", path, "read", lastError());
    return bytes;
}

void FoundationFileSystem::write(const std::string& path, const Bytes& bytes) const
{
    const std::string temporary = path + ".new";
    {
        const Descriptor file(temporary, O_WRONLY | O_CREAT | O_TRUNC);
        if (!file || !file.writeAll(bytes) || ::fsync(file.number()) != 0) {
            const int error = errno;
            ::unlink(temporary.c_str());
            errno = error;
            fail("file", path, "written", lastError());
        }
    }
    rename(temporary, path, "written");
}

void FoundationFileSystem::makeDirectory(const std::string& path) const
{
    std::error_code error;
    fs::create_directories(path, error);
    if (error)
        fail("folder", path, "made", error);
}

void FoundationFileSystem::move(const std::string& from, const std::string& to) const
{
    remove(to);
    rename(from, to, "put in its place");
}

void FoundationFileSystem::remove(const std::string& path) const
{
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

std::string FoundationFileSystem::defaultCacheRoot() const
{
    return cacheRoot_ ? *cacheRoot_ : PlatformSupport::UserFolders::fromEnvironment().caches.string();
}

std::vector<std::string> FoundationFileSystem::listDirectory(const std::string& path) const
{
    std::error_code error;
    std::vector<std::string> names;
    for (fs::directory_iterator entry(path, error), end; !error && entry != end; entry.increment(error))
        names.push_back(entry->path().filename());
    return error ? std::vector<std::string> {} : names;
}

FileDigest FoundationFileSystem::digest(const std::string& path) const
{
    const Descriptor file(path, O_RDONLY);
    if (!file)
        throw ModelStoreError::io("cannot open " + path);
    SHA256 sha256;
    FileDigest result;
    Bytes piece(pieceSize);
    for (;;) {
        const ssize_t count = file.readSome(piece);
        if (count < 0)
            fail("file", path, "read", lastError());
        if (count == 0)
            break;
        sha256.update(std::span(piece).first(static_cast<size_t>(count)));
        result.size += count;
    }
    result.sha256 = SHA256::hex(sha256.finalize());
    return result;
}

std::optional<int64_t> FoundationFileSystem::availableBytes(const std::string& path) const
{
    std::error_code error;
    const uintmax_t bytes = fs::space(path, error).available;
    return error || !std::in_range<int64_t>(bytes) ? std::nullopt : std::optional(static_cast<int64_t>(bytes));
}

} // namespace ModelStore
