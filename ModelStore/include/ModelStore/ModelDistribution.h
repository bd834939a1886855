// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/DownloadProgress.h>
#include <ModelStore/ModelPlatform.h>
#include <ModelStore/RevisionRequirement.h>
#include <ModelStore/StoredModel.h>
#include <PlatformSupport/Awaitable.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ModelStore {

// Where the user wants a model to be.
struct ModelPlace {
    std::optional<std::string> directory; // the model's own
    std::optional<std::string> cacheRoot; // the root of the managed cache; an empty one counts as absent
};

// A published model: its repository, the revision that is pinned, and the files that form it on each platform.
struct ModelDistribution {
    std::string repo; // "owner/name"
    std::string revision;
    std::map<ModelPlatform, std::vector<std::string>> files; // a path that ends in "/" is a whole directory

    bool operator==(const ModelDistribution&) const = default;

    // The files for this product; null if the model is not published for it.
    const std::vector<std::string>* currentFiles() const;

    // The user's own copy if there is one, of which `progress` hears nothing; else what install() gives.
    PlatformSupport::Awaitable<StoredModel> resolve(ModelPlace place, DownloadProgressCallback progress) const;

    // The model as the store has it, downloaded if need be.
    // Errors: ModelStoreError unsupportedPlatform, and those of ModelStore::download()
    PlatformSupport::Awaitable<StoredModel> install(ModelPlace place, DownloadProgressCallback progress) const;

    // A directory that the caller vouches for. Errors: ModelStoreError unsupportedPlatform, localFileMissing
    StoredModel load(const std::string& directory) const;

    // Whether install() would do without the network; reads every file.
    bool isInstalled(const ModelPlace& place) const;

    // Whether resolve() would.
    bool isAvailable(const ModelPlace& place) const;

    // A copy that the user placed by hand: all files are there and no ".trw-meta", which would make it the
    // store's. Its content is the user's business and is not checked.
    std::optional<StoredModel> userPlacedFiles(const std::optional<std::string>& directory) const;

    // All revisions of this model in the managed cache.
    std::vector<StoredModel> installedModels(const std::optional<std::string>& cacheRoot) const;

    // The same model at the revision that ModelStore::resolveRevision() gives.
    PlatformSupport::Awaitable<ModelDistribution> resolving(
        RevisionRequirement requirement, std::optional<std::string> cacheRoot) const;

    // The revisions in the managed cache that will do, in the order of their names.
    std::vector<std::string> downloadedRevisions(
        const RevisionRequirement& requirement, const std::optional<std::string>& cacheRoot) const;
};

} // namespace ModelStore
