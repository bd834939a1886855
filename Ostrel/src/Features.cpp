// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Features.h"

#include <MLProgram/MLModelError.h>

#include <algorithm>

namespace Ostrel {

namespace {

using MLProgram::MLModelError;
using MLProgram::MLMultiArrayConstraint;
using Shape = std::vector<int64_t>;
using Descriptions = std::map<std::string, MLProgram::MLFeatureDescription>;

bool isWithin(const std::vector<std::pair<int64_t, int64_t>>& range, const Shape& shape)
{
    return std::ranges::equal(range, shape, [](const auto& bounds, int64_t dimension) {
        return bounds.first <= dimension && (bounds.second < 0 || dimension <= bounds.second);
    });
}

bool allows(const MLMultiArrayConstraint& constraint, const Shape& shape)
{
    if (!constraint.shapeRange.empty())
        return isWithin(constraint.shapeRange, shape);
    if (!constraint.enumeratedShapes.empty())
        return std::ranges::find(constraint.enumeratedShapes, shape) != constraint.enumeratedShapes.end();
    return constraint.shape == shape;
}

std::string text(const Shape& shape)
{
    std::string result;
    for (const int64_t dimension : shape)
        result += (result.empty() ? "[" : ", ") + std::to_string(dimension);
    return result + "]";
}

const MLMultiArrayConstraint& constraintOf(const Descriptions& features, const std::string& name)
{
    const auto found = features.find(name);
    if (found == features.end() || !found->second.multiArrayConstraint)
        throw MLModelError(MLModelError::Case::invalidFeature, "the stage has no multi-array feature \"" + name + "\"");
    return *found->second.multiArrayConstraint;
}

void require(const MLMultiArrayConstraint& constraint, const std::string& name, const Shape& shape)
{
    if (!allows(constraint, shape))
        throw MLModelError(MLModelError::Case::invalidFeature,
            "feature \"" + name + "\" has the shape " + text(constraint.shape) + ", but the model's metadata asks for "
                + text(shape));
}

} // namespace

void requireInput(const Stage& stage, const std::string& name, const Shape& shape)
{
    require(constraintOf(stage.modelDescription().inputDescriptionsByName, name), name, shape);
}

void requireOutput(const Stage& stage, const std::string& name, const Shape& shape)
{
    const auto& constraint = constraintOf(stage.modelDescription().outputDescriptionsByName, name);
    const bool isTold
        = !constraint.shape.empty() || !constraint.shapeRange.empty() || !constraint.enumeratedShapes.empty();
    if (isTold)
        require(constraint, name, shape);
}

Buffer inputBuffer(const Stage& stage, const std::string& name, Shape shape)
{
    requireInput(stage, name, shape);
    return Buffer(std::move(shape));
}

Buffer outputBuffer(const Stage& stage, const std::string& name, Shape shape)
{
    requireOutput(stage, name, shape);
    return Buffer(std::move(shape));
}

MLProgram::MLDictionaryFeatureProvider provider(NamedBuffers inputs)
{
    std::map<std::string, MLProgram::MLFeatureValue> values;
    for (const auto& [name, buffer] : inputs)
        values.emplace(name, buffer.array());
    return MLProgram::MLDictionaryFeatureProvider(std::move(values));
}

MLProgram::MLPredictionOptions backings(NamedBuffers outputs)
{
    MLProgram::MLPredictionOptions options;
    for (const auto& [name, buffer] : outputs)
        options.outputBackings.emplace(name, buffer.array());
    return options;
}

} // namespace Ostrel
