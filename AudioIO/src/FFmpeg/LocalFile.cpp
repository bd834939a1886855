// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LocalFile.h"

#include <AudioIO/AudioIOError.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <system_error>

namespace AudioIO::FFmpeg {

namespace {

constexpr int bufferSize = 64 * 1024;

std::string systemText(int code)
{
    return std::generic_category().message(code);
}

// The size of what is open, once it is known to be worth reading.
int64_t checkedSize(int descriptor)
{
    struct stat status { };
    if (::fstat(descriptor, &status) != 0)
        throw AudioIOError::decodeFailed(systemText(errno));
    if (S_ISDIR(status.st_mode))
        throw AudioIOError::decodeFailed(systemText(EISDIR));
    if (!S_ISREG(status.st_mode))
        throw AudioIOError::decodeFailed("Not a regular file");
    if (status.st_size == 0)
        throw AudioIOError::decodeFailed("The file is empty");
    return status.st_size;
}

} // namespace

// Without O_NONBLOCK, opening a pipe would wait for its writer.
LocalFile::LocalFile(const std::filesystem::path& path)
    : descriptor_(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC))
{
    if (descriptor_ < 0)
        throw AudioIOError::decodeFailed(systemText(errno));
    try {
        size_ = checkedSize(descriptor_);
    } catch (...) {
        ::close(descriptor_);
        throw;
    }
}

LocalFile::~LocalFile()
{
    ::close(descriptor_);
}

int LocalFile::read(int64_t position, uint8_t* buffer, int size) const
{
    while (true) {
        const ssize_t count = ::pread(descriptor_, buffer, static_cast<size_t>(size), position);
        if (count >= 0)
            return static_cast<int>(count);
        if (errno != EINTR)
            return -errno;
    }
}

InputStream::InputStream(const LocalFile& file)
    : file_(file)
{
    auto* buffer = static_cast<uint8_t*>(av_malloc(bufferSize));
    if (!buffer)
        throw std::bad_alloc();
    context_.reset(avio_alloc_context(buffer, bufferSize, 0, this, &read, nullptr, &seek));
    if (!context_) {
        av_free(buffer);
        throw std::bad_alloc();
    }
}

int InputStream::read(void* self, uint8_t* buffer, int size)
{
    auto& stream = *static_cast<InputStream*>(self);
    const int count = stream.file_.read(stream.position_, buffer, size);
    if (count == 0)
        return AVERROR_EOF;
    if (count < 0) {
        if (stream.readError_ == 0)
            stream.readError_ = -count;
        return AVERROR(-count);
    }
    stream.position_ += count;
    return count;
}

int64_t InputStream::seek(void* self, int64_t offset, int whence)
{
    auto& stream = *static_cast<InputStream*>(self);
    int64_t base = 0;
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return stream.file_.size();
    case SEEK_SET:
        break;
    case SEEK_CUR:
        base = stream.position_;
        break;
    case SEEK_END:
        base = stream.file_.size();
        break;
    default:
        return AVERROR(EINVAL);
    }
    int64_t target = 0;
    if (__builtin_add_overflow(base, offset, &target) || target < 0)
        return AVERROR(EINVAL);
    return stream.position_ = target;
}

} // namespace AudioIO::FFmpeg
