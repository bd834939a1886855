// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Text/WeightSource.h"
#include "Weights/WeightFile.h"

#include <filesystem>
#include <map>
#include <string>

namespace MLProgram {

// The weights of a bundle: files are mapped when a value is first read from them, and stay mapped for as long as
// a constant refers to them.
class BundleWeights final : public WeightSource {
public:
    explicit BundleWeights(std::filesystem::path bundle);

    // The path begins with "@model_path/", which is the bundle, and does not lead out of it.
    Constant read(std::string_view path, uint64_t offset, ScalarType type, const Shape& shape) override;

private:
    const WeightFile& file(std::string_view path);

    std::filesystem::path bundle_;
    std::map<std::string, WeightFile, std::less<>> files_;
};

} // namespace MLProgram
