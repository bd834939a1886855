// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelCatalog/ModelDeclaration.h>

#include <utility>

namespace ModelCatalog {

using ModelStore::currentModelPlatform;
using ModelStore::ModelPlatform;

std::string ModelDeclaration::repo() const
{
    return "tarnwick/" + id();
}

ModelStore::ModelDistribution ModelDeclaration::distribution() const
{
    return { .repo = repo(), .revision = revision(), .files = files() };
}

std::string ModelDeclaration::currentArtifact() const
{
    return artifact(currentModelPlatform);
}

bool ModelDeclaration::supports(ModelPlatform platform) const
{
    return files().contains(platform);
}

bool ModelDeclaration::supports() const
{
    return supports(currentModelPlatform) && osFloor().isSatisfiedHere();
}

PlatformSupport::Awaitable<ModelStore::StoredModel> ModelDeclaration::resolve(
    ModelStore::ModelPlace place, ModelStore::DownloadProgressCallback progress) const
{
    return distribution().resolve(std::move(place), std::move(progress));
}

bool ModelDeclaration::isAvailable(const ModelStore::ModelPlace& place) const
{
    return distribution().isAvailable(place);
}

} // namespace ModelCatalog
