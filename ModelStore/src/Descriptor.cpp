// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Descriptor.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>

namespace ModelStore {

namespace {

constexpr mode_t createdMode = 0644;
constexpr size_t bufferSize = 65536;

// Makes room for so many more bytes, all of which the system hands out at once: asked for page by page, they take half
// as long again. A system that cannot do so goes on as ever.
void reserve(Bytes& bytes, size_t more)
{
    bytes.reserve(bytes.size() + more);
    const size_t page = static_cast<size_t>(::sysconf(_SC_PAGESIZE));
    void* start = bytes.data();
    size_t space = bytes.capacity();
    if (std::align(page, page, start, space))
        ::madvise(start, space / page * page, MADV_POPULATE_WRITE);
}

} // namespace

Descriptor::Descriptor(const std::string& path, int flags)
    : number_(::open(path.c_str(), flags | O_CLOEXEC, createdMode))
{
}

Descriptor::~Descriptor()
{
    if (number_ >= 0)
        ::close(number_);
}

ssize_t Descriptor::readSome(std::span<uint8_t> into) const
{
    ssize_t count = 0;
    do
        count = ::read(number_, into.data(), into.size());
    while (count < 0 && errno == EINTR);
    return count;
}

bool Descriptor::readAll(Bytes& into) const
{
    struct stat status { };
    if (::fstat(number_, &status) == 0 && S_ISREG(status.st_mode))
        reserve(into, static_cast<size_t>(status.st_size)); // a large file is then held once
    std::array<uint8_t, bufferSize> buffer;
    ssize_t count = 0;
    while ((count = readSome(buffer)) > 0)
        into.insert(into.end(), buffer.begin(), buffer.begin() + count);
    return count == 0;
}

bool Descriptor::writeAll(std::span<const uint8_t> bytes) const
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(number_, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 1)
            return false;
        bytes = bytes.subspan(static_cast<size_t>(count));
    }
    return true;
}

} // namespace ModelStore
