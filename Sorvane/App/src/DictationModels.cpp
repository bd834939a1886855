// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "DictationModels.h"

#include <Sorvane/OstrelSpeechEngine.h>

#include <utility>

namespace Sorvane {

using PlatformSupport::Awaitable;

namespace {

Awaitable<std::shared_ptr<SpeechEngine>> loadEngine(
    ModelServices& services, ModelStore::ModelPlace place, PreparationProgress progress)
{
    auto engine = co_await services.loadSpeech(std::move(place), std::move(progress));
    co_return std::make_shared<OstrelSpeechEngine>(std::move(engine));
}

} // namespace

decltype(DictationServices::loadSpeech) speechLoader(ModelServices& services, ModelStore::ModelPlace place)
{
    return [&services, place = std::move(place)](
               PreparationProgress progress) { return loadEngine(services, place, std::move(progress)); };
}

ModelPreparation::Step cleanupPreparation(ModelServices& services, std::filesystem::path directory)
{
    return [&services, directory = std::move(directory)](
               PreparationProgress progress) { return services.prepareCleanup(directory, std::move(progress)); };
}

} // namespace Sorvane
