// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <vector>

namespace Ostrel {

// The geometry of a speech model's stages, as its meta.json tells it. The JSON key stands behind each field.
struct Configuration {
    int64_t sampleRate = 0; // "sample_rate": samples per second
    int64_t hopLength = 0; // "hop_length": samples per mel frame; an encoder frame is 8 of them
    int64_t nSamples = 0; // "n_samples": samples in one window
    int64_t nRows = 0; // "n_rows": hops in the mel stage's input
    int64_t nMels = 0; // "n_mels"
    int64_t nFFT = 0; // "n_fft": analysis length; half of it is the zero padding in front of a window
    float preemph = 0; // "preemph": decay per sample of the tail that continues a full window
    int64_t nPaddedSamples = 0; // "n_padded_samples": samples of the padded window that are laid out at most
    int64_t validFrames = 0; // "valid_frames": mel frames in a full window
    int64_t encFrames = 0; // "enc_frames": encoder frames in a full window
    int64_t jointHidden = 0; // "joint_hidden": width of an encoder projection
    int64_t predHidden = 0; // "pred_hidden": width of a token embedding and of one recurrent layer
    int64_t predLayers = 0; // "pred_layers": recurrent layers of the prediction network
    int64_t vocabSize = 0; // "vocab_size": tokens without the blank
    int64_t blankIdx = 0; // "blank_idx"
    std::vector<int64_t> durations; // "durations": encoder frames to advance, for each duration class
    int64_t decodeWidth = 0; // "decode_width": encoder frames handed to one decoder step

    // Errors: OstrelError invalidModel. `validFrames`, `preemph` and the values of `durations` are not looked at:
    // a duration of 0 is legal, and Decoder copes with any.
    void validate() const;
};

// Every key is required. Errors: DecodingError.
void from_json(const nlohmann::json& json, Configuration& configuration);

} // namespace Ostrel
