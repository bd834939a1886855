// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/ModelDistribution.h>
#include <ModelStore/ModelStore.h>
#include <ModelStore/ModelStoreError.h>

namespace ModelStore {

namespace {

ModelStore storeAt(const ModelPlace& place)
{
    return ModelStore(std::make_shared<FoundationFileSystem>(place.cacheRoot));
}

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

} // namespace

const std::vector<std::string>* ModelDistribution::currentFiles() const
{
    const auto found = files.find(currentModelPlatform);
    return found == files.end() ? nullptr : &found->second;
}

StoredModel ModelDistribution::resolve(const ModelPlace& place, const DownloadProgressCallback& progress) const
{
    if (std::optional<StoredModel> placed = userPlacedFiles(place.directory))
        return std::move(*placed);
    return install(place, progress);
}

StoredModel ModelDistribution::install(const ModelPlace& place, const DownloadProgressCallback& progress) const
{
    return storeAt(place).completeModel(specOf(*this, place), progress);
}

StoredModel ModelDistribution::load(const std::string& directory) const
{
    StoredModel model = StoredModel::platformLocal(directory);
    model.requireFiles(requiredFiles(*this));
    return model;
}

bool ModelDistribution::isInstalled(const ModelPlace& place) const
{
    return currentFiles() != nullptr && storeAt(place).isDownloaded(specOf(*this, place));
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

} // namespace ModelStore
