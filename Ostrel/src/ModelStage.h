// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <MLProgram/MLModel.h>
#include <Ostrel/Stage.h>

namespace Ostrel {

// A stage that the model runtime runs.
class ModelStage final : public Stage {
public:
    // Errors: MLModelError
    ModelStage(const std::filesystem::path& bundle, MLProgram::MLComputeUnits computeUnits);

    const MLProgram::MLModelDescription& modelDescription() const override;
    void predict(
        const MLProgram::MLDictionaryFeatureProvider& inputs, const MLProgram::MLPredictionOptions& options) override;

private:
    MLProgram::MLModel model_;
};

} // namespace Ostrel
