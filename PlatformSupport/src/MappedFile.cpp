// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/FileDescriptor.h>
#include <PlatformSupport/MappedFile.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace PlatformSupport {

namespace {

[[noreturn]] void fail(const std::filesystem::path& path, int error)
{
    throw std::filesystem::filesystem_error("cannot map file", path, std::error_code(error, std::generic_category()));
}

// Not blocking, so that a pipe in the file's place is refused and not waited for.
int openForReading(const std::filesystem::path& path)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        fail(path, errno);
    return descriptor;
}

} // namespace

MappedFile::MappedFile(const std::filesystem::path& path)
{
    const FileDescriptor file(openForReading(path));
    struct stat status { };
    if (::fstat(file.number(), &status) != 0)
        fail(path, errno);
    if (S_ISDIR(status.st_mode))
        fail(path, EISDIR);
    if (!S_ISREG(status.st_mode))
        fail(path, EINVAL);
    if (status.st_size == 0)
        return;

    const auto size = static_cast<size_t>(status.st_size);
    void* const mapping = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, file.number(), 0);
    if (mapping == MAP_FAILED)
        fail(path, errno);
    bytes_ = { static_cast<const std::byte*>(mapping), size };
}

MappedFile::~MappedFile()
{
    if (!bytes_.empty())
        ::munmap(const_cast<std::byte*>(bytes_.data()), bytes_.size());
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : bytes_(std::exchange(other.bytes_, {}))
{
}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept
{
    std::swap(bytes_, other.bytes_);
    return *this;
}

} // namespace PlatformSupport
