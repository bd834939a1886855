// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <string>

namespace Sorvane {

// A file on the network that is known to the byte before it is asked for.
struct DownloadAsset {
    std::string url;
    uint64_t bytes = 0; // the file's size
    std::string sha256; // 64 lowercase hexadecimal digits

    bool operator==(const DownloadAsset&) const = default;
};

} // namespace Sorvane
