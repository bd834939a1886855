// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/RemoteEntry.h>
#include <PlatformSupport/Awaitable.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ModelStore {

// The network, as the store sees it. Used from any thread.
class ModelTransport {
public:
    using BytesCallback = std::function<void(int64_t bytes)>;

    virtual ~ModelTransport() = default;

    // The files, and nothing but files, that the listing at the address names.
    virtual PlatformSupport::Awaitable<std::vector<RemoteEntry>> tree(std::string url) = 0;

    // The names of the tags that the listing at the address names, in its order.
    // Errors: here, ModelStoreError io ("tag listing not supported by this transport")
    virtual PlatformSupport::Awaitable<std::vector<std::string>> tags(std::string url);

    // Puts the body at the address into the file, whole and in one step, in place of what is there. `onBytes` is told
    // how many bytes of it have come, on whatever thread, one call at a time and none after the end. Errors:
    // DataLengthError where the server sends more than `largestSize` bytes
    virtual PlatformSupport::Awaitable<void> download(
        std::string url, std::string file, int64_t largestSize, BytesCallback onBytes)
        = 0;

    // Once after all downloads of a model, however they ended. Here, nothing.
    virtual PlatformSupport::Awaitable<void> finishDownloads();
};

} // namespace ModelStore
