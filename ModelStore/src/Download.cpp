// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// What ModelStore does over the network.
#include "Layout.h"
#include "Sum.h"

#include <ModelStore/HubEndpoint.h>
#include <ModelStore/ModelStore.h>
#include <ModelStore/ModelStoreError.h>
#include <ModelStore/Paths.h>
#include <ModelStore/SHA256.h>
#include <PlatformSupport/Outcome.h>
#include <PlatformSupport/URLError.h>

#include <array>
#include <cstdio>
#include <limits>
#include <set>
#include <string_view>
#include <utility>

namespace ModelStore {

using PlatformSupport::Awaitable;

namespace {

// "1.2 GB"
std::string readable(int64_t bytes)
{
    if (bytes < 1000)
        return std::to_string(bytes) + " bytes";
    constexpr std::array<const char*, 5> units { "kB", "MB", "GB", "TB", "PB" };
    double size = static_cast<double>(bytes) / 1000;
    size_t unit = 0;
    for (; size >= 999.95 && unit + 1 < units.size(); ++unit)
        size /= 1000;
    std::array<char, 32> text {};
    std::snprintf(text.data(), text.size(), "%.1f %s", size, units[unit]);
    return text.data();
}

bool stands(const RemoteEntry& entry, std::string_view requested)
{
    if (!requested.ends_with('/'))
        return entry.path == requested;
    return entry.path == requested.substr(0, requested.size() - 1) || entry.path.starts_with(requested);
}

std::vector<RemoteEntry> entriesFor(const std::string& requested, const std::vector<RemoteEntry>& tree)
{
    std::vector<RemoteEntry> found;
    for (const RemoteEntry& entry : tree) {
        if (!stands(entry, requested))
            continue;
        if (!isSafeRelativePath(entry.path) || entry.size < 0)
            throw ModelStoreError::invalidResponse("unsafe tree entry: " + entry.path);
        found.push_back(entry);
        if (!requested.ends_with('/'))
            break;
    }
    return found;
}

ModelStoreError notInRepo(const std::string& repo, const std::string& file)
{
    return ModelStoreError::notInRepo(repo + "/" + file);
}

ModelStoreError wrongSize(const RemoteEntry& entry, std::optional<int64_t> actual)
{
    return ModelStoreError::integrityCheckFailed(
        entry.path + ": size " + (actual ? std::to_string(*actual) : "missing") + " != " + std::to_string(entry.size));
}

} // namespace

std::vector<RemoteEntry> ModelStore::resolve(
    const std::vector<std::string>& files, const std::vector<RemoteEntry>& tree, const std::string& repo)
{
    std::vector<RemoteEntry> result;
    std::set<std::string> seen;
    for (const std::string& file : files) {
        std::vector<RemoteEntry> found = entriesFor(file, tree);
        if (found.empty())
            throw notInRepo(repo, file);
        for (RemoteEntry& entry : found)
            if (seen.insert(entry.path).second)
                result.push_back(std::move(entry));
    }
    return result;
}

Awaitable<StoredModel> ModelStore::download(ModelSpec spec, DownloadProgressCallback progress) const
{
    return downloadWith(*this, std::move(spec), std::move(progress));
}

Awaitable<StoredModel> ModelStore::downloadWith(ModelStore store, ModelSpec spec, DownloadProgressCallback progress)
{
    if (!isSafe(spec))
        throw ModelStoreError::invalidSpec();
    store.fileSystem_->makeDirectory(store.location(spec));
    if (!progress)
        progress = [](const DownloadProgress&) {};
    if (std::optional<StoredModel> model = store.completeModel(spec, progress))
        co_return std::move(*model);

    store.requireTrustedEndpoint();
    const std::vector<RemoteEntry> tree = co_await store.transport_->tree(store.treeURL(spec));
    const std::vector<RemoteEntry> entries = resolve(spec.files, tree, spec.repo);
    store.requireSpace(spec, entries);
    PlatformSupport::Outcome<Entries> fetched;
    const auto fetching = [&] { return store.fetchAll(spec, entries, progress); };
    co_await PlatformSupport::captureAwaited(fetched, fetching);
    co_await store.transport_->finishDownloads();
    const Manifest manifest { .requested = spec.files, .entries = fetched.take() };

    const std::string path = join({ store.location(spec), manifestFile });
    store.fileSystem_->makeDirectory(directoryAbove(path));
    store.fileSystem_->write(path, manifest.serialized());
    co_return store.storedModel(spec);
}

void ModelStore::requireTrustedEndpoint() const
{
    if (!isTrustedOrigin(endpoint_))
        throw ModelStoreError::io("models come over https, or from this computer, and not from " + endpoint_);
}

// Before anything is fetched that would have to be thrown away. Files of the right size are taken for those that stay.
void ModelStore::requireSpace(const ModelSpec& spec, const std::vector<RemoteEntry>& entries) const
{
    const std::optional<int64_t> available = fileSystem_->availableBytes(location(spec));
    int64_t needed = 0;
    for (const RemoteEntry& entry : entries)
        if (fileSystem_->size(join({ location(spec), entry.path })) != entry.size
            && __builtin_add_overflow(needed, entry.size, &needed))
            needed = std::numeric_limits<int64_t>::max();
    if (available && needed > *available)
        throw ModelStoreError::io("There is not enough space for the model: it needs " + readable(needed) + ", and "
            + readable(*available) + " are free.");
}

Awaitable<ModelStore::Entries> ModelStore::fetchAll(
    ModelSpec spec, std::vector<RemoteEntry> entries, DownloadProgressCallback progress) const
{
    int64_t total = 0;
    for (const RemoteEntry& entry : entries)
        total = sumOf(total, entry.size);

    Entries stored;
    int64_t completed = 0;
    for (const RemoteEntry& entry : entries) {
        std::string digest;
        if (isKept(entry, join({ location(spec), entry.path }))) {
            digest = *entry.sha256;
        } else {
            const auto onBytes = [completed, total, &progress](int64_t bytes) {
                progress({ .completedBytes = completed + bytes, .totalBytes = total });
            };
            digest = co_await fetch(spec, entry, onBytes);
        }
        completed += entry.size;
        stored.push_back({ .path = entry.path, .size = entry.size, .sha256 = digest });
    }
    co_return stored;
}

// A file that is there with the digest that the hub lists. Without a listed digest there is no telling.
bool ModelStore::isKept(const RemoteEntry& entry, const std::string& target) const
{
    if (!entry.sha256 || !fileSystem_->exists(target))
        return false;
    try {
        return SHA256::hex(SHA256::digest(fileSystem_->read(target))) == *entry.sha256;
    } catch (const std::exception&) { // one that cannot be read is fetched again
        return false;
    }
}

Awaitable<std::string> ModelStore::fetch(ModelSpec spec, RemoteEntry entry, ModelTransport::BytesCallback onBytes) const
{
    // Within the model's directory, so that the last step is a matter of the file's name.
    const std::string staging = join({ location(spec), metaDirectory, entry.path + ".part" });
    const std::string target = join({ location(spec), entry.path });
    fileSystem_->makeDirectory(directoryAbove(target));
    fileSystem_->makeDirectory(directoryAbove(staging));
    fileSystem_->remove(staging);
    co_await transfer(spec, entry, staging, std::move(onBytes));
    std::string digest = verified(entry, staging);
    fileSystem_->move(staging, target);
    co_return digest;
}

Awaitable<void> ModelStore::transfer(
    ModelSpec spec, RemoteEntry entry, std::string staging, ModelTransport::BytesCallback onBytes) const
{
    try {
        co_await transport_->download(fileURL(spec, entry.path), staging, entry.size, std::move(onBytes));
    } catch (const PlatformSupport::DataLengthError& error) {
        fileSystem_->remove(staging);
        throw wrongSize(entry, error.bytes());
    } catch (...) {
        fileSystem_->remove(staging);
        throw;
    }
}

// The digest of a file that is as the hub lists it; any other is removed.
std::string ModelStore::verified(const RemoteEntry& entry, const std::string& staging) const
{
    const std::optional<int64_t> size = fileSystem_->size(staging);
    if (size != entry.size) {
        fileSystem_->remove(staging);
        throw wrongSize(entry, size);
    }
    std::string digest = SHA256::hex(SHA256::digest(fileSystem_->read(staging)));
    if (entry.sha256 && *entry.sha256 != digest) {
        fileSystem_->remove(staging);
        throw ModelStoreError::integrityCheckFailed(entry.path + ": sha256 mismatch");
    }
    return digest;
}

} // namespace ModelStore
