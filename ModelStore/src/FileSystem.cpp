// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/FileSystem.h>
#include <ModelStore/SHA256.h>

namespace ModelStore {

std::vector<std::string> FileSystem::listDirectory(const std::string&) const
{
    return {};
}

FileDigest FileSystem::digest(const std::string& path) const
{
    const Bytes bytes = read(path);
    return { .size = static_cast<int64_t>(bytes.size()), .sha256 = SHA256::hex(SHA256::digest(bytes)) };
}

std::optional<int64_t> FileSystem::availableBytes(const std::string&) const
{
    return {};
}

} // namespace ModelStore
