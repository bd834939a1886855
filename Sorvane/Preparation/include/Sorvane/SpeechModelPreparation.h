// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <ModelStore/ModelDistribution.h>
#include <ModelStore/ModelTransport.h>
#include <Ostrel/Ostrel.h>
#include <PlatformSupport/Awaitable.h>
#include <Sorvane/PreparationProgress.h>

#include <memory>

namespace Sorvane::SpeechModelPreparation {

// Loads the speech model, downloading first what is not there. A copy that the user has placed in the directory himself
// is taken as it is. The download is nine tenths of what is reported, the loading the rest.
//
// It works on the thread that awaits it, so that is never the main one.
//
// Errors: CleanupFailure unavailable, where the model is not published for this product; ModelStoreError; what the
//         transport throws; CancellationError; those of Ostrel
PlatformSupport::Awaitable<std::unique_ptr<Ostrel::Ostrel>> load(
    ModelStore::ModelPlace place, std::shared_ptr<ModelStore::ModelTransport> transport, PreparationProgress progress);

} // namespace Sorvane::SpeechModelPreparation
