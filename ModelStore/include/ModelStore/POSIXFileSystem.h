// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/FileSystem.h>

namespace ModelStore {

// Files by bare system calls, under a root of the caller's choice. It lists no directories.
//
// Errors: ModelStoreError io, which names the call and its path: "open(/a/b)"
class POSIXFileSystem final : public FileSystem {
public:
    explicit POSIXFileSystem(std::string cacheRoot);

    bool exists(const std::string& path) const override;
    std::optional<int64_t> size(const std::string& path) const override;
    Bytes read(const std::string& path) const override;
    void write(const std::string& path, const Bytes& bytes) const override;
    void makeDirectory(const std::string& path) const override;
    void move(const std::string& from, const std::string& to) const override;
    void remove(const std::string& path) const override; // files only
    std::string defaultCacheRoot() const override { return cacheRoot_; }

private:
    std::string cacheRoot_;
};

} // namespace ModelStore
