// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/Manifest.h>
#include <ModelStore/ModelStore.h>
#include <ModelStore/ModelStoreError.h>
#include <ModelStore/Paths.h>

#include <algorithm>

namespace ModelStore {

namespace {

constexpr const char* modelsDirectory = "tarnwick-models";
constexpr const char* manifestFile = ".trw-meta/manifest";
constexpr size_t digestLength = 64;

bool isSafe(const ModelSpec& spec)
{
    return isSafeRelativePath(spec.repo) && isSafeRelativePath(spec.revision)
        && std::ranges::all_of(spec.files, isSafeRelativePath);
}

bool isDigest(std::string_view text)
{
    const auto isHexadecimal
        = [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); };
    return text.size() == digestLength && std::ranges::all_of(text, isHexadecimal);
}

std::optional<Manifest> readManifest(const StoredModel& model)
{
    try {
        return Manifest::parse(model.read(manifestFile));
    } catch (const std::exception&) { // a manifest that cannot be read is none, whatever the reason
        return {};
    }
}

bool isIntact(const Manifest::Entry& entry, const StoredModel& model)
{
    if (!isSafeRelativePath(entry.path) || entry.size < 0 || !isDigest(entry.sha256))
        return false;
    try {
        const FileDigest found = model.fileSystem->digest(model.path(entry.path));
        return found == FileDigest { .size = entry.size, .sha256 = entry.sha256 };
    } catch (const std::exception&) { // nor is a file that cannot be read
        return false;
    }
}

} // namespace

ModelStore::ModelStore(std::shared_ptr<const FileSystem> fileSystem)
    : fileSystem_(std::move(fileSystem))
{
}

std::string ModelStore::location(const ModelSpec& spec) const
{
    return spec.cacheDirectory ? *spec.cacheDirectory
                               : join({ fileSystem_->defaultCacheRoot(), modelsDirectory, spec.repo, spec.revision });
}

StoredModel ModelStore::storedModel(const ModelSpec& spec) const
{
    return { .rootPath = location(spec), .fileSystem = fileSystem_ };
}

bool ModelStore::isDownloaded(const ModelSpec& spec) const
{
    if (!isSafe(spec) || spec.files.empty())
        return false;
    const StoredModel model = storedModel(spec);
    const std::optional<Manifest> manifest = readManifest(model);
    return manifest && manifest->requested == spec.files && !manifest->entries.empty()
        && std::ranges::all_of(manifest->entries, [&](const Manifest::Entry& entry) { return isIntact(entry, model); });
}

StoredModel ModelStore::completeModel(const ModelSpec& spec, const DownloadProgressCallback& progress) const
{
    if (!isSafe(spec))
        throw ModelStoreError::invalidSpec();
    StoredModel model = storedModel(spec);
    if (!isDownloaded(spec)) {
        model.requireFiles(spec.files);
        model.requireFiles({ manifestFile });
        throw ModelStoreError::integrityCheckFailed(model.rootPath);
    }
    if (const std::optional<Manifest> manifest = readManifest(model)) {
        int64_t bytes = 0;
        for (const Manifest::Entry& entry : manifest->entries)
            bytes += entry.size;
        progress({ .completedBytes = bytes, .totalBytes = bytes });
    }
    return model;
}

} // namespace ModelStore
