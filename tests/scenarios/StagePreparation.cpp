// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Stage.h"

#include <stdexcept>

// How the models get ready on a stage.
namespace Scenarios {

using PlatformSupport::Awaitable;

Awaitable<std::shared_ptr<Sorvane::SpeechEngine>> Stage::loadSpeech()
{
    ++speechLoads;
    if (preparationStep_.count() > 0)
        co_await clock.sleep(preparationStep_);
    if (speechPreparationFailure)
        throw std::runtime_error(*speechPreparationFailure);
    if (real)
        co_return RealParts::loadEngine();
    co_return engine;
}

Awaitable<void> Stage::prepareCleanup()
{
    if (preparationStep_.count() > 0)
        co_await clock.sleep(preparationStep_);
    if (cleanupPreparationFailure)
        throw std::runtime_error(*cleanupPreparationFailure);
}

} // namespace Scenarios
