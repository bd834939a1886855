// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Buffer.h"

#include <MLProgram/MLFeatureProvider.h>
#include <Ostrel/Configuration.h>
#include <Ostrel/Stage.h>

#include <cstdint>
#include <span>

namespace Ostrel {

// Turns one window of samples into encoder projections, through the mel and the encoder stage.
//
// Every tensor is allocated and bound here once; encode() only changes their contents. The stages must outlive
// the encoder.
class Encoder {
public:
    // Errors: MLModelError, invalidFeature for stages that do not have the configuration's shapes
    Encoder(const Configuration& configuration, Stage& mel, Stage& encoder);

    // `window` holds at most nSamples samples, of which `validFrames` encoder frames (held within 1..encFrames) are
    // real. `into` has room for [jointHidden, encFrames] values: channel-major, encoder frame last.
    //
    // Errors: the stages' own
    void encode(std::span<const float> window, int64_t validFrames, std::span<PlatformSupport::Float16> into);

private:
    void maskMelFrames(int64_t sampleCount);
    void biasKeys(int64_t validFrames);

    Configuration configuration_;
    Stage& mel_;
    Stage& encoder_;

    Buffer rows_;
    Buffer melOut_;
    Buffer keyBias_;
    Buffer padMask_; // all ones, always
    Buffer melMask_;
    Buffer encOut_;

    MLProgram::MLDictionaryFeatureProvider melProvider_;
    MLProgram::MLDictionaryFeatureProvider encoderProvider_;
    MLProgram::MLPredictionOptions melOptions_;
    MLProgram::MLPredictionOptions encoderOptions_;
};

} // namespace Ostrel
