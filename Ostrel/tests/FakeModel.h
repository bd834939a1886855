// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "FakeStage.h"

#include <Ostrel/Assets.h>
#include <PlatformSupport/Float16.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace Ostrel {

// Stages with the shapes that a configuration asks for, which do nothing until told.
std::unique_ptr<FakeStage> fakeMel(const Configuration& configuration);
std::unique_ptr<FakeStage> fakeEncoder(const Configuration& configuration);
std::unique_ptr<FakeStage> fakeDecodeStep(const Configuration& configuration, int64_t lanes);

// An embedding table whose row t is t everywhere, except for the blank's, which is 0.
std::vector<PlatformSupport::Float16> fakeEmbedding(const Configuration& configuration);

// Assets over such stages; the vocabulary is "▁w0", "▁w1", ...
Assets fakeAssets(const Configuration& configuration, int64_t lanes);

// Makes the stages of such assets hear: each sample of value k in 1..vocabSize-1 is the word k, anything below a half
// is silence, and a word lasts as long as its samples do. Words that follow each other must differ.
void makeHearing(const Assets& assets);

// A directory of its own under the test's temporary directory.
std::filesystem::path freshDirectory(const std::string& name);

} // namespace Ostrel
