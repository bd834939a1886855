// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelCatalog/ModelDeclaration.h>

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

ModelStore::StoredModel ModelDeclaration::resolve(
    const ModelStore::ModelPlace& place, const ModelStore::DownloadProgressCallback& progress) const
{
    return distribution().resolve(place, progress);
}

bool ModelDeclaration::isAvailable(const ModelStore::ModelPlace& place) const
{
    return distribution().isAvailable(place);
}

} // namespace ModelCatalog
