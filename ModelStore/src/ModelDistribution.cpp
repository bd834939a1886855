// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/ModelDistribution.h>
#include <ModelStore/ModelStore.h>
#include <ModelStore/ModelStoreError.h>

namespace ModelStore {

using PlatformSupport::Awaitable;

namespace {

const std::vector<std::string>& requiredFiles(const ModelDistribution& distribution)
{
    const std::vector<std::string>* const files = distribution.currentFiles();
    if (files == nullptr)
        throw ModelStoreError::unsupportedPlatform(std::string(rawValue(currentModelPlatform)));
    return *files;
}

ModelSpec specOf(const ModelDistribution& distribution, const ModelPlace& place)
{
    return { .repo = distribution.repo,
        .revision = distribution.revision,
        .files = requiredFiles(distribution),
        .cacheDirectory = place.directory };
}

Awaitable<StoredModel> finished(StoredModel model)
{
    co_return model;
}

Awaitable<ModelDistribution> atRevision(ModelDistribution distribution, Awaitable<std::string> revision)
{
    distribution.revision = co_await std::move(revision);
    co_return distribution;
}

} // namespace

const std::vector<std::string>* ModelDistribution::currentFiles() const
{
    const auto found = files.find(currentModelPlatform);
    return found == files.end() ? nullptr : &found->second;
}

Awaitable<StoredModel> ModelDistribution::resolve(ModelPlace place, DownloadProgressCallback progress) const
{
    if (std::optional<StoredModel> placed = userPlacedFiles(place.directory))
        return finished(std::move(*placed));
    return install(std::move(place), std::move(progress));
}

Awaitable<StoredModel> ModelDistribution::install(ModelPlace place, DownloadProgressCallback progress) const
{
    return ModelStore::platformDefault(place.cacheRoot).download(specOf(*this, place), std::move(progress));
}

StoredModel ModelDistribution::load(const std::string& directory) const
{
    StoredModel model = StoredModel::platformLocal(directory);
    model.requireFiles(requiredFiles(*this));
    return model;
}

bool ModelDistribution::isInstalled(const ModelPlace& place) const
{
    return currentFiles() != nullptr && ModelStore::platformDefault(place.cacheRoot).isDownloaded(specOf(*this, place));
}

bool ModelDistribution::isAvailable(const ModelPlace& place) const
{
    return userPlacedFiles(place.directory).has_value() || isInstalled(place);
}

std::optional<StoredModel> ModelDistribution::userPlacedFiles(const std::optional<std::string>& directory) const
{
    if (!directory)
        return {};
    try {
        StoredModel model = load(*directory);
        return model.exists(".trw-meta") ? std::nullopt : std::optional(std::move(model));
    } catch (const ModelStoreError&) { // not all of it is there: then it is not the user's copy
        return {};
    }
}

std::vector<StoredModel> ModelDistribution::installedModels(const std::optional<std::string>& cacheRoot) const
{
    return ModelStore::platformDefault(cacheRoot).downloadedModels(repo);
}

Awaitable<ModelDistribution> ModelDistribution::resolving(
    RevisionRequirement requirement, std::optional<std::string> cacheRoot) const
{
    return atRevision(
        *this, ModelStore::platformDefault(std::move(cacheRoot)).resolveRevision(repo, std::move(requirement)));
}

std::vector<std::string> ModelDistribution::downloadedRevisions(
    const RevisionRequirement& requirement, const std::optional<std::string>& cacheRoot) const
{
    std::vector<std::string> revisions = ModelStore::platformDefault(cacheRoot).downloadedRevisions(repo);
    std::erase_if(revisions, [&](const std::string& candidate) { return !requirement.bestMatch({ candidate }); });
    return revisions;
}

} // namespace ModelStore
