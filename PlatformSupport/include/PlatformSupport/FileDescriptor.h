// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <unistd.h>

#include <utility>

namespace PlatformSupport {

// An open file, pipe or the like, closed when it goes.
class FileDescriptor {
public:
    FileDescriptor() = default;

    // Takes over what a system call gave; below 0 there is none, and errno tells why.
    explicit FileDescriptor(int number)
        : number_(number)
    {
    }
    FileDescriptor(FileDescriptor&& other) noexcept
        : number_(std::exchange(other.number_, none))
    {
    }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        const FileDescriptor old(std::exchange(number_, std::exchange(other.number_, none)));
        return *this;
    }
    ~FileDescriptor()
    {
        if (isOpen())
            ::close(number_);
    }

    int number() const noexcept { return number_; }
    bool isOpen() const noexcept { return number_ >= 0; }

    // Closes it now, for whoever wants to know whether that went well: below 0, and errno, if not.
    int close() noexcept { return ::close(std::exchange(number_, none)); }

private:
    static constexpr int none = -1;

    int number_ = none;
};

} // namespace PlatformSupport
