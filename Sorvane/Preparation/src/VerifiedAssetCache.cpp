// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/SHA256.h>
#include <PlatformSupport/DownloadProgressObserver.h>
#include <PlatformSupport/FileDescriptor.h>
#include <PlatformSupport/TaskContext.h>
#include <Sorvane/InstallationError.h>
#include <Sorvane/VerifiedAssetCache.h>

#include <fcntl.h>

#include <cerrno>
#include <optional>
#include <span>
#include <system_error>
#include <utility>
#include <vector>

namespace Sorvane {

namespace {

namespace fs = std::filesystem;
using PlatformSupport::Awaitable;
using PlatformSupport::checkCancellation;
using PlatformSupport::TemporaryFile;

constexpr size_t pieceSize = size_t { 4 } * 1024 * 1024; // bytes read and hashed at a time

// The next bytes of the file; none at its end.
std::span<const uint8_t> readPiece(const fs::path& path, int file, std::span<uint8_t> piece)
{
    ssize_t count = ::read(file, piece.data(), piece.size());
    while (count < 0 && errno == EINTR)
        count = ::read(file, piece.data(), piece.size());
    if (count < 0)
        throw fs::filesystem_error("cannot read file", path, std::error_code(errno, std::generic_category()));
    return piece.first(static_cast<size_t>(count));
}

std::string digestOf(const fs::path& path)
{
    const PlatformSupport::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen())
        throw fs::filesystem_error("cannot open file", path, std::error_code(errno, std::generic_category()));
    std::vector<uint8_t> buffer(pieceSize);
    ModelStore::SHA256 hash;
    for (auto piece = readPiece(path, file.number(), buffer); !piece.empty();
         piece = readPiece(path, file.number(), buffer)) {
        checkCancellation();
        hash.update(piece);
    }
    return ModelStore::SHA256::hex(hash.finalize());
}

// A file of another size is not read.
bool matches(const fs::path& path, const DownloadAsset& asset)
{
    std::error_code failure;
    const auto size = fs::file_size(path, failure);
    return !failure && size == asset.bytes && digestOf(path) == asset.sha256;
}

// Whether the asset fits is asked before hours of downloading. Where the system does not say, it is tried.
void requireSpace(fs::path directory, uint64_t bytes)
{
    std::error_code failure;
    while (!fs::exists(directory, failure) && directory.has_relative_path())
        directory = directory.parent_path();
    const auto space = fs::space(directory, failure);
    if (!failure && space.available < bytes)
        throw DiskSpaceError(bytes, space.available);
}

// The file lies in the folder that it is for. So it is on the same file system, and to put it in its place is one step
// that happens or does not; a copy could be cut short when the process ends, and leave half a file under the name of a
// verified one. A server that sends too much is cut off: what it sends is not the asset.
Awaitable<TemporaryFile> downloaded(
    VerifiedAssetCache::Download download, DownloadAsset asset, fs::path folder, PreparationProgress progress)
{
    const PlatformSupport::DownloadRequest request {
        .url = asset.url,
        .folder = std::move(folder),
        .largestSize = static_cast<int64_t>(asset.bytes),
    };
    try {
        co_return co_await download(request, std::move(progress));
    } catch (const PlatformSupport::DataLengthError&) {
        throw InstallationError(InstallationError::Case::checksum);
    }
}

Awaitable<TemporaryFile> downloadedOver(std::shared_ptr<PlatformSupport::URLSession> session,
    PlatformSupport::DownloadRequest request, PreparationProgress progress)
{
    constexpr int64_t statusOfSuccess = 200;
    const PlatformSupport::DownloadProgressObserver observer(std::move(progress));
    auto downloaded = co_await session->download(std::move(request), observer);
    if (downloaded.response.status != statusOfSuccess)
        throw PlatformSupport::URLError(PlatformSupport::URLError::Code::badServerResponse);
    co_return std::move(downloaded.file);
}

} // namespace

VerifiedAssetCache::Download VerifiedAssetCache::over(std::shared_ptr<PlatformSupport::URLSession> session)
{
    return [session = std::move(session)](PlatformSupport::DownloadRequest request, PreparationProgress progress) {
        return downloadedOver(session, std::move(request), std::move(progress));
    };
}

Awaitable<void> VerifiedAssetCache::fetch(DownloadAsset asset, fs::path destination, PreparationProgress progress) const
{
    checkCancellation();
    if (matches(destination, asset)) {
        progress(fetched);
        co_return;
    }
    requireSpace(destination.parent_path(), asset.bytes);
    auto file = co_await downloaded(download, asset, destination.parent_path(), progress);
    checkCancellation();
    if (!matches(file.path(), asset))
        throw InstallationError(InstallationError::Case::checksum);
    checkCancellation();
    fs::create_directories(destination.parent_path());
    file.moveTo(destination);
    progress(fetched);
}

} // namespace Sorvane
