// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Stage.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Ostrel {

// A stage whose description and behaviour a test writes down.
class FakeStage final : public Stage {
public:
    using Features = std::vector<std::pair<std::string, std::vector<int64_t>>>;

    FakeStage(const Features& inputs, const Features& outputs)
    {
        for (const auto& [name, shape] : inputs)
            description.inputDescriptionsByName[name] = feature(name, shape);
        for (const auto& [name, shape] : outputs)
            description.outputDescriptionsByName[name] = feature(name, shape);
    }

    const MLProgram::MLModelDescription& modelDescription() const override { return description; }

    void predict(
        const MLProgram::MLDictionaryFeatureProvider& inputs, const MLProgram::MLPredictionOptions& options) override
    {
        ++calls;
        inputs_ = &inputs;
        options_ = &options;
        if (onPredict)
            onPredict(*this);
    }

    // Within onPredict, and after it until the engine that owns the buffers goes.
    std::span<PlatformSupport::Float16> input(const std::string& name) const
    {
        return inputs_->dictionary().at(name).multiArrayValue()->elements<PlatformSupport::Float16>();
    }
    std::span<PlatformSupport::Float16> output(const std::string& name) const
    {
        return options_->outputBackings.at(name)->elements<PlatformSupport::Float16>();
    }
    std::vector<float> inputValues(const std::string& name) const
    {
        std::vector<float> values(input(name).size());
        PlatformSupport::toFloat(input(name), values);
        return values;
    }

    MLProgram::MLModelDescription description;
    std::function<void(FakeStage&)> onPredict;
    int calls = 0;

private:
    static MLProgram::MLFeatureDescription feature(const std::string& name, const std::vector<int64_t>& shape)
    {
        return { .name = name,
            .multiArrayConstraint = MLProgram::MLMultiArrayConstraint { .shape = shape,
                .dataType = MLProgram::MLMultiArrayDataType::float16,
                .shapeRange = {},
                .enumeratedShapes = {} },
            .isOptional = false };
    }

    const MLProgram::MLDictionaryFeatureProvider* inputs_ = nullptr;
    const MLProgram::MLPredictionOptions* options_ = nullptr;
};

} // namespace Ostrel
