// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <functional>

namespace PlatformSupport {

// Thins out the reports of a download: one for every 512 KiB, and the last one.
//
//     session->download({ .url = url }, DownloadProgressObserver(progress));
class DownloadProgressObserver {
public:
    static constexpr int64_t step = 524'288; // bytes

    using Progress = std::function<void(double fraction)>;
    using OnBytes = std::function<void(int64_t bytes)>;

    explicit DownloadProgressObserver(Progress progress, OnBytes onBytes = {});

    // So many bytes are there, of so many; fractions are told only where that is 1 or more.
    void operator()(int64_t bytes, int64_t expectedBytes);

private:
    Progress progress_;
    OnBytes onBytes_;
    int64_t lastBytes_ = 0;
};

} // namespace PlatformSupport
