// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "UnpackedArchive.h"

#include <PlatformSupport/FileDescriptor.h>
#include <PlatformSupport/RunOn.h>
#include <PlatformSupport/TaskContext.h>
#include <PlatformSupport/WholeFile.h>
#include <Sorvane/CleanupModelInstaller.h>
#include <Sorvane/CleanupProcess.h>
#include <Sorvane/InstallationError.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <exception>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace Sorvane {

using PlatformSupport::Awaitable;

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds unpackingLimit { 30 };
constexpr std::chrono::seconds provingLimit { 60 }; // of each tool; the first start of a program may be slow

// The shares of the whole.
constexpr double weightsShare = 0.9;
constexpr double runtimeShare = 0.08;

constexpr std::string_view stagingPrefix = ".runtime-";

// Progress of a part that begins at `start` of the whole. A download that is done is not the part's end: its file is
// still to be verified.
PreparationProgress part(PreparationProgress whole, double start, double share)
{
    return [whole = std::move(whole), start, share](
               double fraction) { whole(start + std::min(fraction, VerifiedAssetCache::fetched) * share); };
}

bool isStaging(const std::string& name)
{
    return name.starts_with(stagingPrefix) && PlatformSupport::UUID::parse(name.substr(stagingPrefix.size()));
}

void removeQuietly(const fs::path& path)
{
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

// A new directory that is gone, with everything in it, when this object goes.
class StagingDirectory {
public:
    explicit StagingDirectory(fs::path path)
        : path_(std::move(path))
    {
        fs::create_directory(path_);
    }
    StagingDirectory(const StagingDirectory&) = delete;
    StagingDirectory& operator=(const StagingDirectory&) = delete;
    ~StagingDirectory() { removeQuietly(path_); }

    const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

// Brings everything that was written on the file system of the directory to the disk.
void synchronise(const fs::path& directory)
{
    const PlatformSupport::FileDescriptor opened(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.isOpen() || ::syncfs(opened.number()) != 0)
        throw fs::filesystem_error(
            "cannot write to the disk", directory, std::error_code(errno, std::generic_category()));
}

} // namespace

CleanupModelInstaller::CleanupModelInstaller(
    fs::path directory, VerifiedAssetCache cache, CleanupAssets assets, Surroundings surroundings)
    : files_ { std::move(directory) }
    , cache_(std::move(cache))
    , assets_(std::move(assets))
    , surroundings_(std::move(surroundings))
{
}

// No coroutine itself: what it returns holds a copy of this object from the start.
Awaitable<void> CleanupModelInstaller::prepare(PreparationProgress progress) const
{
    const auto work = [installer = *this, progress = std::move(progress)] { return installer.prepareHere(progress); };
    return PlatformSupport::runOn(surroundings_.files, work);
}

Awaitable<void> CleanupModelInstaller::prepareHere(PreparationProgress progress) const
{
    fs::create_directories(files_.directory);
    removeLeftovers();
    co_await cache_.fetch(assets_.weights, files_.weights(), part(progress, 0, weightsShare));
    PlatformSupport::checkCancellation();
    if (!runtimeIsInstalled())
        co_await installRuntime(progress);
    if (!fs::exists(readyMarker())) {
        co_await prove();
        markReady();
    }
    PlatformSupport::checkCancellation();
    progress(1.0);
}

Awaitable<void> CleanupModelInstaller::installRuntime(PreparationProgress progress) const
{
    co_await cache_.fetch(assets_.runtime, archive(), part(progress, weightsShare, runtimeShare));
    const std::string name = std::string(stagingPrefix) + surroundings_.uuids.next().text();
    const StagingDirectory staging(files_.directory / name);
    co_await unpack(staging.path());
    PlatformSupport::checkCancellation();

    const fs::path runtime = staging.path() / assets_.runtimeFolder();
    const bool isComplete = holdsOnlyFolder(staging.path(), assets_.runtimeFolder())
        && isExecutableFile(runtime / files_.generator().filename())
        && isExecutableFile(runtime / files_.tokeniser().filename());
    if (!isComplete)
        throw InstallationError(InstallationError::Case::runtime);
    replaceRuntime(runtime);
}

Awaitable<void> CleanupModelInstaller::unpack(fs::path staging) const
{
    const CleanupProcess::Invocation tar {
        .executable = "/usr/bin/tar",
        .model = {},
        .prompt = {},
        .timeout = unpackingLimit,
        .arguments = std::vector<std::string> { "-xzf", archive(), "-C", staging },
        .promptOption = CleanupProcess::PromptOption::leaveOut,
    };
    co_await surroundings_.process.run(tar);
}

// The ready marker speaks of the runtime that goes, so it goes first: were this process ended in between, the new one
// would count as proved. The repair marker goes last, for until then there is something to repair.
void CleanupModelInstaller::replaceRuntime(const fs::path& unpacked) const
{
    removeQuietly(readyMarker());
    fs::remove_all(files_.runtime());
    fs::rename(unpacked, files_.runtime());
    removeQuietly(repairMarker());
}

// A tool that does not run is unpacked again the next time. A cancellation says nothing about the tools.
Awaitable<void> CleanupModelInstaller::prove() const
{
    std::exception_ptr failure;
    try {
        co_await runOnce(files_.generator());
        co_await runOnce(files_.tokeniser());
    } catch (...) {
        failure = std::current_exception();
    }
    if (!failure)
        co_return;
    if (!PlatformSupport::isCancelled())
        std::ofstream { repairMarker() };
    std::rethrow_exception(failure);
}

Awaitable<void> CleanupModelInstaller::runOnce(fs::path tool) const
{
    const CleanupProcess::Invocation invocation {
        .executable = std::move(tool),
        .model = {},
        .prompt = {},
        .timeout = provingLimit,
        .arguments = std::vector<std::string> { "--version" },
        .promptOption = CleanupProcess::PromptOption::leaveOut,
    };
    co_await surroundings_.process.run(invocation);
    PlatformSupport::checkCancellation();
}

// From here on nobody looks at the tools again, so they must be on the disk before the marker is.
void CleanupModelInstaller::markReady() const
{
    synchronise(files_.directory);
    PlatformSupport::replaceFile(
        readyMarker(), assets_.runtimeVersion + "\n", PlatformSupport::Durability::replacement);
}

bool CleanupModelInstaller::runtimeIsInstalled() const
{
    return isExecutableFile(files_.generator()) && isExecutableFile(files_.tokeniser()) && !fs::exists(repairMarker());
}

// What a preparation left in the directory when its process was killed.
void CleanupModelInstaller::removeLeftovers() const
{
    for (const auto& entry : fs::directory_iterator(files_.directory)) {
        const std::string name = entry.path().filename();
        if (isStaging(name) || PlatformSupport::isUnfinishedReplacement(name))
            removeQuietly(entry.path());
    }
}

fs::path CleanupModelInstaller::archive() const
{
    return files_.directory / "downloads" / assets_.archiveName();
}

fs::path CleanupModelInstaller::readyMarker() const
{
    return files_.directory / (".runtime-" + assets_.runtimeVersion + "-ready");
}

fs::path CleanupModelInstaller::repairMarker() const
{
    return files_.directory / ".runtime-needs-repair";
}

} // namespace Sorvane
