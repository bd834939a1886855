// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Composition.h"

#include <ModelStore/ModelDistribution.h>
#include <ModelStore/ModelTransport.h>
#include <Ostrel/Ostrel.h>
#include <PlatformSupport/BlockingPool.h>
#include <PlatformSupport/SystemClock.h>
#include <PlatformSupport/UUID.h>
#include <Sorvane/CleanupModelInstaller.h>
#include <Sorvane/CleanupProcess.h>
#include <Sorvane/PreparationProgress.h>
#include <Sorvane/TranscriptCleanup.h>
#include <Sorvane/VerifiedAssetCache.h>

#include <filesystem>
#include <functional>
#include <memory>

namespace Sorvane {

// Where the speech model is looked for: the directory that the user placed one in, if he named it
// ($OSTREL_MODEL_DIRECTORY), else where models are kept.
ModelStore::ModelPlace defaultModelPlace();

// What a preparation reaches the world through.
struct Network {
    std::shared_ptr<ModelStore::ModelTransport> speech;
    VerifiedAssetCache cleanup;

    static Network reachable();
    static Network cutOff(); // whoever asks for anything is told that there is no connection
};

// Gets both models ready, as this program does it.
//
// Its functions are awaited on the main thread, which they do not hold up. The object outlives what they return.
class ModelServices {
public:
    ModelServices(const Composition& composition, Network network);

    PlatformSupport::Awaitable<std::unique_ptr<Ostrel::Ostrel>> loadSpeech(
        ModelStore::ModelPlace place, PreparationProgress progress);
    PlatformSupport::Awaitable<void> prepareCleanup(std::filesystem::path directory, PreparationProgress progress);

    // The cleanup by what is prepared in the directory. The tagger outlives what is returned.
    TranscriptCleanup cleanup(
        const LexicalTagger& tagger, std::filesystem::path directory = CleanupFiles::ofThisUser().directory);

    CleanupProcess& cleanupProcess() { return process_; }

private:
    std::function<CleanupAssets()> cleanupAssets_;
    Network network_;
    PlatformSupport::SystemClock clock_;
    PlatformSupport::RandomUUIDs uuids_;
    CleanupProcess process_ { clock_, uuids_ };
    PlatformSupport::BlockingPool files_ { 1 };
};

} // namespace Sorvane
