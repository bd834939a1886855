// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <MLProgram/MLMultiArray.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace MLProgram {

// The shapes that a multi-array feature may have.
struct MLMultiArrayConstraint {
    // The declared shape; for a flexible feature its default.
    std::vector<int64_t> shape;
    MLMultiArrayDataType dataType = MLMultiArrayDataType::float32;

    // At most one of the two is non-empty; both empty: the shape is fixed.
    std::vector<std::pair<int64_t, int64_t>> shapeRange; // lower and upper bound of each dimension; upper -1: none
    std::vector<std::vector<int64_t>> enumeratedShapes;
};

struct MLFeatureDescription {
    std::string name;
    std::optional<MLMultiArrayConstraint> multiArrayConstraint; // absent for features that are no arrays
    bool isOptional = false;
};

// What one function of a model takes and gives.
struct MLModelDescription {
    std::map<std::string, MLFeatureDescription> inputDescriptionsByName;
    std::map<std::string, MLFeatureDescription> outputDescriptionsByName;
    std::map<std::string, std::string> userDefinedMetadata; // the model author's own keys
};

} // namespace MLProgram
