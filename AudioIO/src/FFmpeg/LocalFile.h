// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "FFmpeg.h"

#include <cstdint>
#include <filesystem>

namespace AudioIO::FFmpeg {

// A regular file, open for reading.
class LocalFile {
public:
    // Errors: AudioIOError decodeFailed, for what cannot be opened, is no regular file, or is empty
    explicit LocalFile(const std::filesystem::path& path);
    LocalFile(const LocalFile&) = delete;
    LocalFile& operator=(const LocalFile&) = delete;
    ~LocalFile();

    int64_t size() const { return size_; } // bytes

    // Bytes read, 0 at the end of the file, or the negative of errno.
    int read(int64_t position, uint8_t* buffer, int size) const;

private:
    int descriptor_;
    int64_t size_ = 0;
};

// One reader's view of a file, with a position of its own: what a demuxer reads from instead of an address.
// The file must outlive it; it stays where it was made.
class InputStream {
public:
    explicit InputStream(const LocalFile& file);
    InputStream(const InputStream&) = delete;
    InputStream& operator=(const InputStream&) = delete;

    AVIOContext* context() { return context_.get(); }

    // errno of the first read that failed, 0 if none did.
    int readError() const { return readError_; }

private:
    static int read(void* self, uint8_t* buffer, int size);
    static int64_t seek(void* self, int64_t offset, int whence);

    const LocalFile& file_;
    int64_t position_ = 0;
    int readError_ = 0;
    Owned<AVIOContext> context_;
};

} // namespace AudioIO::FFmpeg
