// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/CleanupAssets.h>
#include <Sorvane/CleanupFiles.h>
#include <Sorvane/InstallationError.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

namespace Sorvane {
namespace {

TEST(CleanupAssets, ArePinnedForEachComputerThatHasThem)
{
    const struct {
        const char* system;
        const char* machine;
        const char* archive;
        uint64_t bytes;
        const char* sha256;
    } rows[] {
        { "Linux", "x86_64", "llama-b10809-bin-ubuntu-x64.tar.gz", 16'734'586,
            "5e34434ddc6d03cd1584f403201aff0d4bd1a5793a72ff7e286532dfd1e4b941" },
        { "Linux", "aarch64", "llama-b10809-bin-ubuntu-arm64.tar.gz", 13'380'118,
            "f2b7333971e1b7b42e9268bfdbfa30f5f56e2897156084d2251385df94aec358" },
        { "Darwin", "arm64", "llama-b10809-bin-macos-arm64.tar.gz", 11'123'196,
            "7d692df9e1e386e62f1c12b843903218041e6cd74c9415aa39a7ed3176f9eaa2" },
    };
    for (const auto& row : rows) {
        const auto assets = CleanupAssets::pinnedFor(row.system, row.machine, {});
        ASSERT_TRUE(assets) << row.archive;
        EXPECT_EQ(assets->archiveName(), row.archive);
        EXPECT_EQ(assets->runtime.url,
            std::string("https://github.com/ggml-org/llama.cpp/releases/download/b10809/") + row.archive);
        EXPECT_EQ(assets->runtime.bytes, row.bytes);
        EXPECT_EQ(assets->runtime.sha256, row.sha256);
        EXPECT_EQ(assets->runtimeVersion, "b10809");
        EXPECT_EQ(assets->runtimeFolder(), "llama-b10809");
        EXPECT_EQ(assets->weights.url,
            "https://huggingface.co/superwhisper/s1-mini-GGUF/resolve/34add00a48a2e5d24e5a4ee5405a99620a3a240c/"
            "s1-mini-q4_k_m.gguf");
        EXPECT_EQ(assets->weights.bytes, 484'219'808u);
        EXPECT_EQ(assets->weights.sha256, "3b41ebe2502cbd03e811d5d16b022f5ab551eda58d62597d152f89535003c634");
    }
}

TEST(CleanupAssets, AreNotPinnedForOtherComputers)
{
    EXPECT_FALSE(CleanupAssets::pinnedFor("Linux", "riscv64", {}));
    EXPECT_FALSE(CleanupAssets::pinnedFor("Darwin", "x86_64", {}));
    EXPECT_FALSE(CleanupAssets::pinnedFor("", "", {}));
}

TEST(CleanupAssets, ComeFromMirrorsUnderTheSamePaths)
{
    const CleanupAssets::Hosts mirrors { .hub = "http://localhost:8000/hub", .releases = "https://mirror.example" };
    const auto assets = CleanupAssets::pinnedFor("Linux", "x86_64", mirrors);
    ASSERT_TRUE(assets);
    EXPECT_EQ(assets->weights.url.find("http://localhost:8000/hub/superwhisper/"), 0u);
    EXPECT_EQ(assets->runtime.url.find("https://mirror.example/ggml-org/"), 0u);
    const auto original = CleanupAssets::pinnedFor("Linux", "x86_64", {});
    EXPECT_EQ(assets->weights.sha256, original->weights.sha256);
    EXPECT_EQ(assets->runtime.sha256, original->runtime.sha256);
    EXPECT_EQ(assets->archiveName(), original->archiveName());
}

TEST(CleanupAssetHosts, AreTheUsualOnesUnlessTheEnvironmentNamesMirrors)
{
    ::unsetenv("TRW_HUB_ENDPOINT");
    ::unsetenv("TRW_RELEASE_ENDPOINT");
    const auto usual = CleanupAssets::Hosts::fromEnvironment();
    EXPECT_EQ(usual.hub, "https://huggingface.co");
    EXPECT_EQ(usual.releases, "https://github.com");
    ::setenv("TRW_HUB_ENDPOINT", "https://mirror.example/hub/", 1);
    ::setenv("TRW_RELEASE_ENDPOINT", "http://127.0.0.1:4000", 1);
    const auto mirrors = CleanupAssets::Hosts::fromEnvironment();
    ::unsetenv("TRW_HUB_ENDPOINT");
    ::unsetenv("TRW_RELEASE_ENDPOINT");
    EXPECT_EQ(mirrors.hub, "https://mirror.example/hub");
    EXPECT_EQ(mirrors.releases, "http://127.0.0.1:4000");
}

TEST(CleanupAssetHosts, AreEncryptedBeyondThisComputer)
{
    for (const char* const address : { "http://mirror.example", "ftp://localhost", "localhost",
             "http://localhost.example", "http://127.0.0.1.example/" }) {
        ::setenv("TRW_RELEASE_ENDPOINT", address, 1);
        EXPECT_THROW(CleanupAssets::Hosts::fromEnvironment(), std::runtime_error) << address;
    }
    for (const char* const address : { "http://localhost", "http://localhost:80", "http://[::1]:80/x" }) {
        ::setenv("TRW_RELEASE_ENDPOINT", address, 1);
        EXPECT_EQ(CleanupAssets::Hosts::fromEnvironment().releases, address);
    }
    ::unsetenv("TRW_RELEASE_ENDPOINT");
}

TEST(InstallationError, HasTheWordsForTheUser)
{
    using Case = InstallationError::Case;
    EXPECT_EQ(InstallationError(Case::checksum).description(), "The download could not be verified. Please retry.");
    EXPECT_EQ(InstallationError(Case::runtime).description(), "The downloaded runtime is incomplete. Please retry.");
}

TEST(DiskSpaceError, SaysWhatIsNeededAndWhatThereIs)
{
    EXPECT_EQ(DiskSpaceError(484'219'808, 12'999'999).description(),
        "There is not enough space for the download: it needs 485 MB, and 12 MB are free.");
    EXPECT_EQ(DiskSpaceError(2'000'000, 1'999'999).description(),
        "There is not enough space for the download: it needs 2 MB, and 1 MB are free.");
}

} // namespace
} // namespace Sorvane
