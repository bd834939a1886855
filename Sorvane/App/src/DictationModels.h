// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "ModelServices.h"

#include <Sorvane/CleanupFiles.h>
#include <Sorvane/DictationServices.h>

#include <filesystem>

namespace Sorvane {

// What the controller needs to get its models ready, as the application has it. `services` outlives the controller and
// its preparation.
decltype(DictationServices::loadSpeech) speechLoader(
    ModelServices& services, ModelStore::ModelPlace place = defaultModelPlace());
ModelPreparation::Step cleanupPreparation(
    ModelServices& services, std::filesystem::path directory = CleanupFiles::ofThisUser().directory);

} // namespace Sorvane
