// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <MLProgram/MLModelConfiguration.h>
#include <Ostrel/Configuration.h>
#include <Ostrel/Stage.h>
#include <PlatformSupport/MappedFile.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Ostrel {

// A speech model, read from its directory and checked as far as that is possible before the first sample.
struct Assets {
    Configuration configuration;
    std::vector<std::string> vocabulary; // token index to piece; at least vocabSize, may be longer

    // [vocabSize + 1, predHidden] 16-bit floats, little-endian, one row per token; read in place.
    PlatformSupport::MappedFile embeddingData;

    std::unique_ptr<Stage> mel; // audio rows to mel features
    std::unique_ptr<Stage> encoder; // mel features to encoder projections
    std::unique_ptr<Stage> decodeStep; // one step of the prediction and joint networks
    int64_t decodeLanes; // windows that decodeStep takes at once

    // Reads meta.json, vocab.json, embedding.f16, mel.mlmodelc, encoder.mlmodelc and decoder.mlmodelc, in this
    // order; the first failure ends it. It takes as long as the runtime needs to compile the stages.
    //
    // Errors: OstrelError invalidModel when the parts do not fit; the reader's, the JSON parser's, DecodingError and
    //         MLModelError as they are
    static Assets load(const std::filesystem::path& directory, MLProgram::MLComputeUnits computeUnits);

    // The same with stages from elsewhere.
    using StageLoader = std::function<std::unique_ptr<Stage>(const std::filesystem::path& bundle)>;
    static Assets load(const std::filesystem::path& directory, const StageLoader& loadStage);
};

} // namespace Ostrel
