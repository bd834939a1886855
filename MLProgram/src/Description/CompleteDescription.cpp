// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Description/CompleteDescription.h"

#include <MLProgram/MLModelError.h>

#include <algorithm>
#include <string>

namespace MLProgram {
namespace {

MLMultiArrayDataType dataTypeOf(ScalarType type)
{
    switch (type) {
    case ScalarType::float16:
        return MLMultiArrayDataType::float16;
    case ScalarType::float64:
        return MLMultiArrayDataType::float64;
    case ScalarType::int8:
        return MLMultiArrayDataType::int8;
    default:
        return isFloatingPoint(type) ? MLMultiArrayDataType::float32 : MLMultiArrayDataType::int32;
    }
}

// The declared shape; empty when a dimension is open.
std::vector<int64_t> knownShape(const ValueType& type)
{
    if (!type.hasKnownShape())
        return {};
    return { type.shape.begin(), type.shape.end() };
}

MLFeatureDescription signatureOf(const Function& function, const Value& value)
{
    MLMultiArrayConstraint constraint;
    constraint.dataType = dataTypeOf(value.type.scalar);
    constraint.shape = knownShape(value.type);
    const auto flexibility = function.flexibility.find(value.name);
    if (flexibility != function.flexibility.end()) {
        constraint.shape = flexibility->second.defaultShape;
        constraint.shapeRange = flexibility->second.ranges;
        constraint.enumeratedShapes = flexibility->second.enumeratedShapes;
    }
    return { value.name, std::move(constraint), false };
}

bool admitsShape(const ValueType& type, const std::vector<int64_t>& shape)
{
    return shape.size() <= maximumRank && admits(type, Shape(shape.begin(), shape.end()));
}

bool isSound(const ValueType& type, const MLMultiArrayConstraint& constraint)
{
    const auto admitted = [&](const std::vector<int64_t>& shape) { return admitsShape(type, shape); };
    const auto isRange = [](const auto& bounds) {
        return bounds.first >= 0 && (bounds.second == -1 || bounds.second >= bounds.first);
    };
    const auto& ranges = constraint.shapeRange;
    return (constraint.shape.empty() || admitted(constraint.shape))
        && (ranges.empty() || ranges.size() == type.shape.size()) && std::all_of(ranges.begin(), ranges.end(), isRange)
        && std::all_of(constraint.enumeratedShapes.begin(), constraint.enumeratedShapes.end(), admitted);
}

// `described` takes what it leaves out from the value's own type.
void complete(MLFeatureDescription& described, const Value& value)
{
    if (!described.multiArrayConstraint)
        return;
    MLMultiArrayConstraint& constraint = *described.multiArrayConstraint;
    if (constraint.shape.empty())
        constraint.shape = knownShape(value.type);
    if (!isSound(value.type, constraint))
        throw MLModelError(MLModelError::Case::invalidProgram,
            "the description gives the feature \"" + value.name + "\" a shape that it does not have in the program");
}

using Features = std::map<std::string, MLFeatureDescription>;

void addFeature(Features& features, const Features* described, const Function& function, const Value& value)
{
    const auto found = described == nullptr ? Features::const_iterator() : described->find(value.name);
    const bool isDescribed = described != nullptr && found != described->end();
    MLFeatureDescription feature = isDescribed ? found->second : signatureOf(function, value);
    complete(feature, value);
    features.emplace(value.name, std::move(feature));
}

void checkNames(const Features& described, const Features& features)
{
    for (const auto& [name, feature] : described) {
        if (!features.contains(name))
            throw MLModelError(MLModelError::Case::invalidProgram,
                "the description names a feature \"" + name + "\" that the program does not have");
    }
}

} // namespace

MLModelDescription completeDescription(const Function& function, const MLModelDescription* described)
{
    MLModelDescription complete;
    for (const ValueIndex index : function.parameters) {
        const Value& value = function.values[index];
        if (value.type.kind != ValueType::Kind::state)
            addFeature(complete.inputDescriptionsByName,
                described == nullptr ? nullptr : &described->inputDescriptionsByName, function, value);
    }
    for (const ValueIndex index : function.outputs)
        addFeature(complete.outputDescriptionsByName,
            described == nullptr ? nullptr : &described->outputDescriptionsByName, function, function.values[index]);
    if (described == nullptr)
        return complete;
    checkNames(described->inputDescriptionsByName, complete.inputDescriptionsByName);
    checkNames(described->outputDescriptionsByName, complete.outputDescriptionsByName);
    complete.userDefinedMetadata = described->userDefinedMetadata;
    return complete;
}

} // namespace MLProgram
