// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/TemporaryFile.h>
#include <PlatformSupport/URLSession.h>
#include <Sorvane/DownloadAsset.h>
#include <Sorvane/PreparationProgress.h>

#include <filesystem>
#include <functional>
#include <memory>

namespace Sorvane {

// Fetches files that are known beforehand, and lets each in only if its size and its digest are right.
//
// A value. It reads and hashes on the thread that awaits it, so that is never the main one.
struct VerifiedAssetCache {
    // Gets what lies at an address. Throws what went wrong.
    using Download = std::function<PlatformSupport::Awaitable<PlatformSupport::TemporaryFile>(
        PlatformSupport::DownloadRequest request, PreparationProgress progress)>;

    // From the network; only the status 200 will do.
    // Errors: URLError, CancellationError
    static Download over(std::shared_ptr<PlatformSupport::URLSession> session);

    // What is reported once a file is in place: some of the work is still to come then.
    static constexpr double fetched = 0.98;

    Download download = over(PlatformSupport::URLSession::shared());

    // Puts the asset at the destination, unless it lies there already: then nothing is downloaded. Whatever else lies
    // there stays until the verified file takes its place, so that no byte that is not verified is ever found under
    // that name. Nothing of a download that failed is kept. This object outlives the wait.
    //
    // Errors: InstallationError checksum; DiskSpaceError; CancellationError; what `download` throws;
    //         std::filesystem::filesystem_error
    PlatformSupport::Awaitable<void> fetch(
        DownloadAsset asset, std::filesystem::path destination, PreparationProgress progress) const;
};

} // namespace Sorvane
