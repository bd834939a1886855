// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>

namespace ModelStore {

// How much of a model is on the disk.
struct DownloadProgress {
    int64_t completedBytes = 0;
    int64_t totalBytes = 0;

    // 0 to 1; without a total, 1 as soon as there is any byte.
    double fraction() const noexcept
    {
        if (totalBytes < 1)
            return completedBytes > 0 ? 1 : 0;
        return std::min(static_cast<double>(completedBytes) / static_cast<double>(totalBytes), 1.0);
    }

    bool operator==(const DownloadProgress&) const = default;
};

using DownloadProgressCallback = std::function<void(const DownloadProgress&)>;

} // namespace ModelStore
