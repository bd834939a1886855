// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/ModelStoreError.h>
#include <ModelStore/StoredModel.h>
#include <PlatformSupport/UTF8.h>

namespace ModelStore {

StoredModel StoredModel::platformLocal(std::string rootPath)
{
    return { .rootPath = std::move(rootPath), .fileSystem = std::make_shared<FoundationFileSystem>() };
}

std::string StoredModel::path(const std::string& relative) const
{
    if (rootPath.empty())
        return relative;
    if (relative.empty())
        return rootPath;
    return rootPath.ends_with('/') ? rootPath + relative : rootPath + "/" + relative;
}

bool StoredModel::exists(const std::string& relative) const
{
    return fileSystem->exists(path(relative));
}

Bytes StoredModel::read(const std::string& relative) const
{
    return fileSystem->read(path(relative));
}

std::string StoredModel::readString(const std::string& relative) const
{
    const Bytes bytes = read(relative);
    std::string text(bytes.begin(), bytes.end());
    if (!PlatformSupport::isUTF8(text))
        throw ModelStoreError::io(relative + " is not valid UTF-8");
    return text;
}

void StoredModel::requireFiles(const std::vector<std::string>& files) const
{
    for (std::string file : files) {
        if (file.ends_with('/'))
            file.pop_back();
        if (!exists(file))
            throw ModelStoreError::localFileMissing(path(file));
    }
}

} // namespace ModelStore
