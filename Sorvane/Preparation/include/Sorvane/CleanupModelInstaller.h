// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Awaitable.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/CleanupAssets.h>
#include <Sorvane/CleanupFiles.h>
#include <Sorvane/PreparationProgress.h>
#include <Sorvane/VerifiedAssetCache.h>

#include <filesystem>
#include <string>

namespace Sorvane {

class CleanupProcess;

// Lays out the weights and the tools of the text cleanup in one directory, and proves by running them that the tools
// start. What it leaves makes the next time free of downloads, and of work but for hashing the weights.
//
// Below the directory, beside what CleanupFiles names:
//
//   downloads/<archive>        the verified archive, kept so that a repair needs no network
//   .runtime-<version>-ready   both tools have run
//   .runtime-needs-repair      a tool did not run: the runtime is unpacked again
//   .runtime-<UUID>/           where an archive is unpacked; never there between two preparations
//
// A value; any thread. Nothing else writes in the directory during a preparation.
class CleanupModelInstaller {
public:
    // What it works with. All that is referred to outlives the preparation.
    struct Surroundings {
        CleanupProcess& process;
        PlatformSupport::UUIDSource& uuids;
        PlatformSupport::Executor files; // a thread on which files may be read and written at length
    };

    CleanupModelInstaller(
        std::filesystem::path directory, VerifiedAssetCache cache, CleanupAssets assets, Surroundings surroundings);

    // Brings the directory into order, from whatever state it is in; this object may go meanwhile. Reports up to 0.882
    // for the weights, then up to 0.9784 for the archive, and 1 at the end.
    //
    // Errors: InstallationError, DiskSpaceError, CancellationError, CleanupFailure, and those of the download, of
    //         CleanupProcess and of the file system
    PlatformSupport::Awaitable<void> prepare(PreparationProgress progress) const;

private:
    PlatformSupport::Awaitable<void> prepareHere(PreparationProgress progress) const;
    PlatformSupport::Awaitable<void> installRuntime(PreparationProgress progress) const;
    PlatformSupport::Awaitable<void> unpack(std::filesystem::path staging) const;
    PlatformSupport::Awaitable<void> prove() const;
    PlatformSupport::Awaitable<void> runOnce(std::filesystem::path tool) const;
    bool runtimeIsInstalled() const;
    void replaceRuntime(const std::filesystem::path& unpacked) const;
    void markReady() const;
    void removeLeftovers() const;

    std::filesystem::path archive() const;
    std::filesystem::path readyMarker() const;
    std::filesystem::path repairMarker() const;

    CleanupFiles files_;
    VerifiedAssetCache cache_;
    CleanupAssets assets_;
    Surroundings surroundings_;
};

} // namespace Sorvane
