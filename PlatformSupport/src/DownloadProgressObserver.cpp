// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/DownloadProgressObserver.h>

#include <utility>

namespace PlatformSupport {

DownloadProgressObserver::DownloadProgressObserver(Progress progress, OnBytes onBytes)
    : progress_(std::move(progress))
    , onBytes_(std::move(onBytes))
{
}

void DownloadProgressObserver::operator()(int64_t bytes, int64_t expectedBytes)
{
    if (bytes - lastBytes_ < step && bytes != expectedBytes)
        return;
    lastBytes_ = bytes;
    if (onBytes_)
        onBytes_(bytes);
    if (progress_ && expectedBytes >= 1)
        progress_(static_cast<double>(bytes) / static_cast<double>(expectedBytes));
}

} // namespace PlatformSupport
