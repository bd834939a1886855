// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/HubEndpoint.h>
#include <ModelStore/ModelStoreError.h>
#include <PlatformSupport/Environment.h>
#include <Sorvane/CleanupAssets.h>
#include <Sorvane/CleanupFailure.h>
#include <Sorvane/CleanupFiles.h>

#include <sys/utsname.h>

#include <algorithm>
#include <array>
#include <utility>

namespace Sorvane {

namespace {

// The revision of the weights is the commit in the path.
constexpr std::string_view weightsPath
    = "/superwhisper/s1-mini-GGUF/resolve/34add00a48a2e5d24e5a4ee5405a99620a3a240c/s1-mini-q4_k_m.gguf";
constexpr std::string_view weightsDigest = "3b41ebe2502cbd03e811d5d16b022f5ab551eda58d62597d152f89535003c634";

// The version stands in the archive's name, in the folder within it and in the marker of a proved runtime. With another
// version come other archives: a new table.
constexpr std::string_view pinnedVersion = "b10809";

struct PinnedArchive {
    std::string_view system; // as uname() names them
    std::string_view machine;
    std::string_view name; // its own part of the archive's name
    uint64_t bytes;
    std::string_view sha256;
};

constexpr std::array pinnedArchives {
    PinnedArchive { "Linux", "x86_64", "ubuntu-x64", 16'734'586,
        "5e34434ddc6d03cd1584f403201aff0d4bd1a5793a72ff7e286532dfd1e4b941" },
    PinnedArchive { "Linux", "aarch64", "ubuntu-arm64", 13'380'118,
        "f2b7333971e1b7b42e9268bfdbfa30f5f56e2897156084d2251385df94aec358" },
    PinnedArchive { "Darwin", "arm64", "macos-arm64", 11'123'196,
        "7d692df9e1e386e62f1c12b843903218041e6cd74c9415aa39a7ed3176f9eaa2" },
};

template <typename... Parts> std::string joined(const Parts&... parts)
{
    std::string text;
    (text.append(parts), ...);
    return text;
}

std::string releaseEndpoint()
{
    std::string endpoint = PlatformSupport::environmentVariable("TRW_RELEASE_ENDPOINT").value_or("");
    while (endpoint.ends_with('/'))
        endpoint.pop_back();
    return endpoint.empty() ? CleanupAssets::Hosts().releases : endpoint;
}

} // namespace

CleanupAssets::Hosts CleanupAssets::Hosts::fromEnvironment()
{
    Hosts hosts { .hub = ModelStore::hubEndpoint(), .releases = releaseEndpoint() };
    for (const auto& host : { hosts.hub, hosts.releases })
        if (!ModelStore::isTrustedOrigin(host))
            throw ModelStore::ModelStoreError::io(
                "the text cleanup comes over https, or from this computer, and not from " + host);
    return hosts;
}

CleanupAssets CleanupAssets::pinned()
{
    utsname host {};
    ::uname(&host);
    auto assets = pinnedFor(std::data(host.sysname), std::data(host.machine), Hosts::fromEnvironment());
    if (!assets)
        throw CleanupFailure(CleanupFailure::Case::unavailable);
    return std::move(*assets);
}

std::optional<CleanupAssets> CleanupAssets::pinnedFor(
    std::string_view system, std::string_view machine, const Hosts& hosts)
{
    const auto* const archive = std::ranges::find_if(
        pinnedArchives, [&](const auto& row) { return row.system == system && row.machine == machine; });
    if (archive == pinnedArchives.end())
        return std::nullopt;
    const std::string name = joined("llama-", pinnedVersion, "-bin-", archive->name, ".tar.gz");
    return CleanupAssets {
        .weights = { joined(hosts.hub, weightsPath), cleanupWeightsSize, std::string(weightsDigest) },
        .runtime = { joined(hosts.releases, "/ggml-org/llama.cpp/releases/download/", pinnedVersion, "/", name),
            archive->bytes, std::string(archive->sha256) },
        .runtimeVersion = std::string(pinnedVersion),
    };
}

std::string CleanupAssets::archiveName() const
{
    return runtime.url.substr(runtime.url.rfind('/') + 1);
}

std::string CleanupAssets::runtimeFolder() const
{
    return "llama-" + runtimeVersion;
}

} // namespace Sorvane
