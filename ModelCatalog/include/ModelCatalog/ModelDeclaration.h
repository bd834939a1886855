// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelCatalog/OSFloor.h>
#include <ModelStore/ModelDistribution.h>

#include <map>
#include <string>
#include <vector>

namespace ModelCatalog {

// What a model says of itself, so that generic code can find and fetch it. Stateless.
class ModelDeclaration {
public:
    virtual ~ModelDeclaration() = default;

    virtual std::string id() const = 0; // the repository's name below its owner
    virtual std::string product() const = 0; // used in reports
    virtual std::string revision() const = 0; // the one that is pinned
    virtual std::string sdkVersion() const = 0; // of the package that declares it
    virtual std::string summary() const = 0; // one line
    virtual std::map<ModelStore::ModelPlatform, std::vector<std::string>> files() const = 0;
    virtual OSFloor osFloor() const { return OSFloor::packageFloor(); }
    virtual std::string artifact(ModelStore::ModelPlatform platform) const = 0; // the model's main file there

    // What follows from these.
    std::string repo() const; // "<owner>/<id>"
    ModelStore::ModelDistribution distribution() const;
    std::string currentArtifact() const; // for this product
    bool supports(ModelStore::ModelPlatform platform) const; // whether it has files for it
    bool supports() const; // whether this computer can run it

    // See ModelDistribution.
    PlatformSupport::Awaitable<ModelStore::StoredModel> resolve(
        ModelStore::ModelPlace place, ModelStore::DownloadProgressCallback progress) const;
    bool isAvailable(const ModelStore::ModelPlace& place) const;
};

} // namespace ModelCatalog
