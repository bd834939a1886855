// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <ModelStore/FoundationFileSystem.h>
#include <ModelStore/HubEndpoint.h>
#include <ModelStore/ModelStore.h>
#include <Ostrel/OstrelModel.h>
#include <PlatformSupport/TaskContext.h>
#include <Sorvane/CleanupFailure.h>
#include <Sorvane/SpeechModelPreparation.h>

#include <utility>

namespace Sorvane::SpeechModelPreparation {

using ModelStore::ModelPlace;
using ModelStore::ModelTransport;
using ModelStore::StoredModel;
using PlatformSupport::Awaitable;
using PlatformSupport::checkCancellation;

namespace {

constexpr double downloadShare = 0.9; // of the whole

Awaitable<StoredModel> downloaded(
    ModelPlace place, std::shared_ptr<ModelTransport> transport, PreparationProgress progress)
{
    const auto distribution = Ostrel::OstrelModel().distribution();
    if (auto placed = distribution.userPlacedFiles(place.directory))
        co_return std::move(*placed);
    const auto* const files = distribution.currentFiles();
    if (!files)
        throw CleanupFailure(CleanupFailure::Case::unavailable);
    const ModelStore::ModelSpec spec {
        .repo = distribution.repo,
        .revision = distribution.revision,
        .files = *files,
        .cacheDirectory = place.directory,
    };
    const ModelStore::ModelStore store(std::move(transport),
        std::make_shared<ModelStore::FoundationFileSystem>(place.cacheRoot), ModelStore::hubEndpoint());
    const auto onBytes = [progress = std::move(progress)](const ModelStore::DownloadProgress& downloaded) {
        progress(downloaded.fraction() * downloadShare);
    };
    co_return co_await store.download(spec, onBytes);
}

} // namespace

Awaitable<std::unique_ptr<Ostrel::Ostrel>> load(
    ModelPlace place, std::shared_ptr<ModelTransport> transport, PreparationProgress progress)
{
    checkCancellation();
    const StoredModel model = co_await downloaded(std::move(place), std::move(transport), progress);
    checkCancellation();
    auto engine = std::make_unique<Ostrel::Ostrel>(std::filesystem::path(model.rootPath));
    checkCancellation();
    progress(1.0);
    co_return engine;
}

} // namespace Sorvane::SpeechModelPreparation
