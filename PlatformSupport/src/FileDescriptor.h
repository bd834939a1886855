// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <unistd.h>

#include <utility>

namespace PlatformSupport {

// An open file that is closed when it goes.
class FileDescriptor {
public:
    explicit FileDescriptor(int value)
        : value_(value)
    {
    }
    ~FileDescriptor()
    {
        if (value_ >= 0)
            ::close(value_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int value() const { return value_; }

    // Closes it now, for whoever wants to know whether that went well.
    int close() { return ::close(std::exchange(value_, -1)); }

private:
    int value_; // below 0: none
};

} // namespace PlatformSupport
