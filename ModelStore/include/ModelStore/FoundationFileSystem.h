// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/FileSystem.h>

namespace ModelStore {

// Files as the desktop keeps them: managed models live in the user's caches directory unless another root is
// given, files are replaced in one step, and digests are made without holding the file.
//
// Errors: ModelStoreError io, in words for the user: "cannot open <path>" for a digest of a file that cannot be opened,
//         else as "The file “<path>” could not be read: Permission denied."
class FoundationFileSystem final : public FileSystem {
public:
    // An empty root counts as absent.
    explicit FoundationFileSystem(std::optional<std::string> cacheRoot = std::nullopt);

    bool exists(const std::string& path) const override;
    std::optional<int64_t> size(const std::string& path) const override;
    Bytes read(const std::string& path) const override;
    void write(const std::string& path, const Bytes& bytes) const override;
    void makeDirectory(const std::string& path) const override;
    void move(const std::string& from, const std::string& to) const override;
    void remove(const std::string& path) const override;

    // The given root, else $XDG_CACHE_HOME, else the home directory's ".cache".
    std::string defaultCacheRoot() const override;

    std::vector<std::string> listDirectory(const std::string& path) const override;
    FileDigest digest(const std::string& path) const override;
    std::optional<int64_t> availableBytes(const std::string& path) const override;

private:
    std::optional<std::string> cacheRoot_;
};

} // namespace ModelStore
