// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/FileSystem.h>

#include <sys/types.h>

#include <span>

namespace ModelStore {

// An open file, closed when it goes. A failing function leaves its reason in errno.
class Descriptor {
public:
    // A file that is created gets mode 0644.
    Descriptor(const std::string& path, int flags);
    ~Descriptor();
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const noexcept { return number_ >= 0; }
    int number() const noexcept { return number_; }

    ssize_t readSome(std::span<uint8_t> into) const; // 0 at the end, below 0 on failure
    bool readAll(Bytes& into) const; // appends what is left of the file
    bool writeAll(std::span<const uint8_t> bytes) const;

private:
    int number_;
};

} // namespace ModelStore
