// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ModelServices.h"

#include "OfflineTransport.h"

#include <ModelStore/CancelableSpeechTransport.h>
#include <PlatformSupport/Environment.h>
#include <PlatformSupport/RunOn.h>
#include <PlatformSupport/URLError.h>
#include <PlatformSupport/URLSession.h>
#include <Sorvane/SpeechModelPreparation.h>

#include <utility>

namespace Sorvane {

using PlatformSupport::Awaitable;

ModelStore::ModelPlace defaultModelPlace()
{
    auto directory = PlatformSupport::environmentVariable("OSTREL_MODEL_DIRECTORY");
    if (directory && directory->empty())
        directory.reset();
    return { .directory = std::move(directory), .cacheRoot = {} };
}

Network Network::reachable()
{
    const auto& session = PlatformSupport::URLSession::shared();
    return { .speech = std::make_shared<ModelStore::CancelableSpeechTransport>(session),
        .cleanup = { VerifiedAssetCache::over(session) } };
}

Network Network::cutOff()
{
    const auto download = [](const PlatformSupport::DownloadRequest&,
                              const PreparationProgress&) -> Awaitable<PlatformSupport::TemporaryFile> {
        throw PlatformSupport::URLError(PlatformSupport::URLError::Code::notConnectedToInternet);
    };
    return { .speech = std::make_shared<OfflineTransport>(), .cleanup = { download } };
}

ModelServices::ModelServices(const Composition& composition, Network network)
    : cleanupAssets_(composition.cleanupAssets)
    , network_(std::move(network))
{
}

Awaitable<std::unique_ptr<Ostrel::Ostrel>> ModelServices::loadSpeech(
    ModelStore::ModelPlace place, PreparationProgress progress)
{
    const auto work = [place = std::move(place), transport = network_.speech, progress = std::move(progress)] {
        return SpeechModelPreparation::load(place, transport, progress);
    };
    return PlatformSupport::runOn(files_.executor(), work);
}

Awaitable<void> ModelServices::prepareCleanup(std::filesystem::path directory, PreparationProgress progress)
{
    const CleanupModelInstaller installer(std::move(directory), network_.cleanup, cleanupAssets_(),
        { .process = process_, .uuids = uuids_, .files = files_.executor() });
    return installer.prepare(std::move(progress));
}

TranscriptCleanup ModelServices::cleanup(const LexicalTagger& tagger, std::filesystem::path directory)
{
    const auto generate
        = [this, &tagger, directory = std::move(directory)](std::string text, TranscriptCleanup::Context context) {
              const CleanupFiles files { .directory = directory, .weightsSize = cleanupAssets_().weights.bytes };
              return TranscriptCleanup::generate(std::move(text), context, files, process_, tagger);
          };
    return { generate, tagger };
}

} // namespace Sorvane
