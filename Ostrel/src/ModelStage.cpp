// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "ModelStage.h"

#include <Ostrel/Assets.h>

namespace Ostrel {

ModelStage::ModelStage(const std::filesystem::path& bundle, MLProgram::MLComputeUnits computeUnits)
    : model_(bundle, { .computeUnits = computeUnits, .functionName = {} })
{
}

const MLProgram::MLModelDescription& ModelStage::modelDescription() const
{
    return model_.modelDescription();
}

void ModelStage::predict(
    const MLProgram::MLDictionaryFeatureProvider& inputs, const MLProgram::MLPredictionOptions& options)
{
    model_.prediction(inputs, options);
}

Assets Assets::load(const std::filesystem::path& directory, MLProgram::MLComputeUnits computeUnits)
{
    return load(directory,
        [&](const std::filesystem::path& bundle) { return std::make_unique<ModelStage>(bundle, computeUnits); });
}

} // namespace Ostrel
