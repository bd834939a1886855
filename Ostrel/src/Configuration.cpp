// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "JSONFields.h"

#include <Ostrel/Configuration.h>
#include <Ostrel/OstrelError.h>

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Ostrel {

void from_json(const nlohmann::json& json, Configuration& configuration)
{
    using namespace JSONFields;
    configuration = {
        .sampleRate = integer(json, "sample_rate"),
        .hopLength = integer(json, "hop_length"),
        .nSamples = integer(json, "n_samples"),
        .nRows = integer(json, "n_rows"),
        .nMels = integer(json, "n_mels"),
        .nFFT = integer(json, "n_fft"),
        .preemph = static_cast<float>(number(json, "preemph")),
        .nPaddedSamples = integer(json, "n_padded_samples"),
        .validFrames = integer(json, "valid_frames"),
        .encFrames = integer(json, "enc_frames"),
        .jointHidden = integer(json, "joint_hidden"),
        .predHidden = integer(json, "pred_hidden"),
        .predLayers = integer(json, "pred_layers"),
        .vocabSize = integer(json, "vocab_size"),
        .blankIdx = integer(json, "blank_idx"),
        .durations = integers(json, "durations"),
        .decodeWidth = integer(json, "decode_width"),
    };
}

void Configuration::validate() const
{
    const bool geometry = std::min({ sampleRate, hopLength, nSamples, nRows, nMels, nFFT, encFrames, jointHidden,
                              predHidden, predLayers })
        >= 1;
    if (!geometry)
        throw OstrelError::invalidModel("model metadata has invalid geometry");

    const bool vocabulary = vocabSize >= 1 && blankIdx >= 0 && blankIdx <= vocabSize && !durations.empty();
    if (!vocabulary)
        throw OstrelError::invalidModel("model metadata has an invalid vocabulary");

    const bool decoding = decodeWidth >= 1 && nPaddedSamples >= nSamples;
    if (!decoding)
        throw OstrelError::invalidModel("model metadata has invalid decode geometry");
}

} // namespace Ostrel
