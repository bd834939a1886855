// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ModelStore {

// One file of a repository, as the hub lists it.
struct RemoteEntry {
    std::string path;
    int64_t size = 0; // bytes
    std::optional<std::string> sha256; // of files in large-file storage, in lowercase hexadecimal

    bool operator==(const RemoteEntry&) const = default;
};

} // namespace ModelStore
