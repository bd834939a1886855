// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Buffer.h"

#include <Ostrel/Stage.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

// How the engine's buffers and a stage's named inputs and outputs meet.
namespace Ostrel {

// Refuse a feature that the stage does not have, or not in this shape, before anything is allocated or run: what
// the metadata says of a model and what its stages say must agree. An output whose shape the stage does not tell
// is left to the runtime.
//
// Errors: MLModelError invalidFeature
void requireInput(const Stage& stage, const std::string& name, const std::vector<int64_t>& shape);
void requireOutput(const Stage& stage, const std::string& name, const std::vector<int64_t>& shape);

// A buffer for such a feature.
Buffer inputBuffer(const Stage& stage, const std::string& name, std::vector<int64_t> shape);
Buffer outputBuffer(const Stage& stage, const std::string& name, std::vector<int64_t> shape);

using NamedBuffers = std::initializer_list<std::pair<const char*, const Buffer&>>;

MLProgram::MLDictionaryFeatureProvider provider(NamedBuffers inputs);
MLProgram::MLPredictionOptions backings(NamedBuffers outputs);

} // namespace Ostrel
