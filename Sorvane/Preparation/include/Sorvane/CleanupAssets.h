// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/DownloadAsset.h>

#include <optional>
#include <string>
#include <string_view>

namespace Sorvane {

// What the text cleanup is made of, to the byte: the weights of the model, and an archive of the tools that run it.
struct CleanupAssets {
    // Where assets are downloaded from, without a slash at the end. They may be mirrors: what comes from them is
    // verified in any case.
    struct Hosts {
        std::string hub = "https://huggingface.co";
        std::string releases = "https://github.com";

        // $TRW_HUB_ENDPOINT and $TRW_RELEASE_ENDPOINT, where they are set.
        // Errors: ModelStoreError io, for one that is neither https nor on this computer
        static Hosts fromEnvironment();
    };

    DownloadAsset weights;
    DownloadAsset runtime;
    std::string runtimeVersion;

    // The ones that belong to this version of the program, for this computer.
    // Errors: CleanupFailure unavailable, where there are none; those of Hosts::fromEnvironment()
    static CleanupAssets pinned();

    // The same for a system and a machine, by the names that uname() has for them.
    static std::optional<CleanupAssets> pinnedFor(
        std::string_view system, std::string_view machine, const Hosts& hosts);

    std::string archiveName() const; // of the file that the runtime is downloaded as
    std::string runtimeFolder() const; // in which the archive has everything

    bool operator==(const CleanupAssets&) const = default;
};

} // namespace Sorvane
