// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/FileSystem.h>

#include <memory>
#include <string>
#include <vector>

namespace ModelStore {

// A model on disk, as its readers see it: one that the store manages and one that the user placed by hand are the
// same thing to them.
struct StoredModel {
    std::string rootPath;
    std::shared_ptr<const FileSystem> fileSystem;

    // A model in a directory of this computer.
    static StoredModel platformLocal(std::string rootPath);

    // Where a file of the model lies; "" gives the root itself.
    std::string path(const std::string& relative) const;

    bool exists(const std::string& relative) const;
    Bytes read(const std::string& relative) const; // errors: the file system's

    // Errors: the file system's; ModelStoreError io ("<relative> is not valid UTF-8")
    std::string readString(const std::string& relative) const;

    // Errors: ModelStoreError localFileMissing, for the first that is not there. A directory may end in "/".
    void requireFiles(const std::vector<std::string>& files) const;
};

} // namespace ModelStore
