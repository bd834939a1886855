// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Digest.h"
#include "Layout.h"
#include "Sum.h"

#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/FoundationTransport.h>
#include <ModelStore/HubEndpoint.h>
#include <ModelStore/Manifest.h>
#include <ModelStore/ModelStore.h>
#include <ModelStore/Paths.h>

#include <algorithm>

namespace ModelStore {

using PlatformSupport::Awaitable;

namespace {

constexpr const char* modelsDirectory = "tarnwick-models";

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

// None if the hub does not say; then there is what has been downloaded.
Awaitable<std::vector<std::string>> publishedTags(
    std::shared_ptr<ModelTransport> transport, std::string endpoint, std::string repo)
{
    if (!isTrustedOrigin(endpoint) || !isSafeRelativePath(repo))
        co_return std::vector<std::string>();
    try {
        co_return co_await transport->tags(endpoint + "/api/models/" + repo + "/refs");
    } catch (const std::exception&) {
        co_return std::vector<std::string>();
    }
}

} // namespace

ModelStore::ModelStore(
    std::shared_ptr<ModelTransport> transport, std::shared_ptr<const FileSystem> fileSystem, std::string endpoint)
    : transport_(std::move(transport))
    , fileSystem_(std::move(fileSystem))
    , endpoint_(std::move(endpoint))
{
}

ModelStore::ModelStore(std::optional<std::string> cacheRoot, std::string endpoint)
    : ModelStore(std::make_shared<FoundationTransport>(), std::make_shared<FoundationFileSystem>(std::move(cacheRoot)),
        std::move(endpoint))
{
}

ModelStore ModelStore::platformDefault(std::optional<std::string> cacheRoot)
{
    return { std::move(cacheRoot), hubEndpoint() };
}

std::string ModelStore::location(const ModelSpec& spec) const
{
    return spec.cacheDirectory ? *spec.cacheDirectory : join({ directoryOf(spec.repo), spec.revision });
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

std::optional<StoredModel> ModelStore::completeModel(
    const ModelSpec& spec, const DownloadProgressCallback& progress) const
{
    if (!isDownloaded(spec))
        return {};
    StoredModel model = storedModel(spec);
    if (const std::optional<Manifest> manifest = readManifest(model)) {
        int64_t bytes = 0;
        for (const Manifest::Entry& entry : manifest->entries)
            bytes = sumOf(bytes, entry.size);
        progress({ .completedBytes = bytes, .totalBytes = bytes });
    }
    return model;
}

std::string ModelStore::directoryOf(const std::string& repo) const
{
    return join({ fileSystem_->defaultCacheRoot(), modelsDirectory, repo });
}

std::vector<std::string> ModelStore::downloadedRevisions(const std::string& repo) const
{
    const std::string directory = directoryOf(repo);
    std::vector<std::string> revisions = fileSystem_->listDirectory(directory);
    std::erase_if(revisions, [&](const std::string& revision) {
        return !fileSystem_->exists(join({ directory, revision, manifestFile }));
    });
    std::ranges::sort(revisions);
    return revisions;
}

std::vector<StoredModel> ModelStore::downloadedModels(const std::string& repo) const
{
    std::vector<StoredModel> models;
    for (const std::string& revision : downloadedRevisions(repo))
        models.push_back({ .rootPath = join({ directoryOf(repo), revision }), .fileSystem = fileSystem_ });
    return models;
}

std::string ModelStore::treeURL(const ModelSpec& spec) const
{
    return endpoint_ + "/api/models/" + spec.repo + "/tree/" + spec.revision + "?recursive=true";
}

std::string ModelStore::fileURL(const ModelSpec& spec, const std::string& path) const
{
    return endpoint_ + "/" + spec.repo + "/resolve/" + spec.revision + "/" + path;
}

Awaitable<std::string> ModelStore::resolveRevision(std::string repo, RevisionRequirement requirement) const
{
    return resolveWith(*this, std::move(repo), std::move(requirement));
}

Awaitable<std::string> ModelStore::resolveWith(ModelStore store, std::string repo, RevisionRequirement requirement)
{
    if (const std::optional<std::string> revision = requirement.exactRevision())
        co_return *revision;
    const std::vector<std::string> published = co_await publishedTags(store.transport_, store.endpoint_, repo);
    if (const std::optional<std::string> tag = requirement.bestMatch(published))
        co_return *tag;
    co_return requirement.bestMatch(store.downloadedRevisions(repo)).value_or(requirement.text());
}

} // namespace ModelStore
