// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ModelStore {

using Bytes = std::vector<uint8_t>;

// A file's size, and its SHA-256 in lowercase hexadecimal.
struct FileDigest {
    int64_t size = 0;
    std::string sha256;

    bool operator==(const FileDigest&) const = default;
};

// Everything that the store does to a disk. Paths are plain strings, absolute or relative to the process, and are
// taken as they stand. Implementations are stateless and used from any thread.
//
// Errors: ModelStoreError io, or the platform's own
class FileSystem {
public:
    virtual ~FileSystem() = default;

    virtual bool exists(const std::string& path) const = 0; // a file or a directory
    virtual std::optional<int64_t> size(const std::string& path) const = 0; // of a file
    virtual Bytes read(const std::string& path) const = 0;
    virtual void write(const std::string& path, const Bytes& bytes) const = 0; // replaces the file
    virtual void makeDirectory(const std::string& path) const = 0; // with its ancestors; an existing one is fine
    virtual void move(const std::string& from, const std::string& to) const = 0; // replaces `to`
    virtual void remove(const std::string& path) const = 0; // as well as it can; never fails

    // The root under which managed models live.
    virtual std::string defaultCacheRoot() const = 0;

    // Names in a directory, in no order; none on any failure, and none here.
    virtual std::vector<std::string> listDirectory(const std::string& path) const;

    // Here, of the file read as a whole.
    virtual FileDigest digest(const std::string& path) const;

    // The bytes that can still be written in a directory; here, not known.
    virtual std::optional<int64_t> availableBytes(const std::string& path) const;
};

} // namespace ModelStore
