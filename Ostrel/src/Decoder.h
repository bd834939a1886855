// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Buffer.h"
#include "WindowTokens.h"

#include <MLProgram/MLFeatureProvider.h>
#include <Ostrel/Configuration.h>
#include <Ostrel/Stage.h>

#include <cstdint>
#include <span>
#include <vector>

namespace Ostrel {

// Turns encoder projections into tokens: a greedy token-and-duration transducer.
//
// Each call of the decoder stage scores the next token of several windows, one in each lane, at up to decodeWidth
// encoder frames, and how many frames to go on. A window stays in its lane until it is used up; the lane then
// takes the next one that waits. After a blank the same scores serve for later columns, since a blank does not
// change the state.
//
// Whatever the durations and the scores, every window ends. A frame index never becomes negative, and a window is
// used up after maximumTokensPerFrame stage calls for each of its frames. No model without negative durations
// needs more: at each frame it emits at most that many tokens before it goes on.
//
// The stage and the embedding table must outlive the decoder. Every tensor is allocated and bound here once, and
// in a round nothing is allocated but the growth of the results.
class Decoder {
public:
    static constexpr int64_t maximumTokensPerFrame = 10;

    // `embedding` holds [vocabSize + 1, predHidden] values.
    // Errors: MLModelError, invalidFeature for a stage that does not have the configuration's shapes
    Decoder(const Configuration& configuration, int64_t lanes, std::span<const PlatformSupport::Float16> embedding,
        Stage& stage);

    // `projections` holds [windows, jointHidden, encFrames] values, `valids` the encoder frames of each window that
    // are real (held within 1..encFrames). Gives the tokens of each window.
    //
    // Errors: the stage's own
    std::vector<WindowTokens> decode(
        std::span<const PlatformSupport::Float16> projections, std::span<const int64_t> valids);

private:
    struct Batch {
        std::span<const PlatformSupport::Float16> projections;
        std::span<const int64_t> valids;
        std::vector<WindowTokens> results;
        size_t nextWindow = 0;
    };

    // One lane of the stage, and where its window stands.
    struct Lane {
        size_t index; // its place in the tensors
        bool isBusy = false;
        size_t window = 0;
        int64_t frame = 0;
        int64_t limit = 0; // encoder frames of the window
        int64_t lastToken = 0; // selects the embedding row
        int64_t tokenCount = 0; // since the last blank or forced advance
        int64_t callCount = 0;
    };

    void takeNextWindow(Lane& lane, Batch& batch);
    void fillInputs(const Lane& lane, const Batch& batch);
    void advance(Lane& lane, WindowTokens& result);
    void emit(Lane& lane, int64_t column, int64_t token, int64_t duration, WindowTokens& result);
    int64_t columnsOf(const Lane& lane) const;
    int64_t argmax(int64_t firstChannel, int64_t count, int64_t column) const;

    Configuration configuration_;
    std::span<const PlatformSupport::Float16> embedding_;
    Stage& stage_;
    size_t laneCount_;

    Buffer embed_;
    Buffer hIn_;
    Buffer cIn_;
    Buffer encStep_;
    Buffer logitsOut_;
    Buffer hOut_;
    Buffer cOut_;
    std::vector<float> scores_; // one lane's logits: [channels, decodeWidth]

    MLProgram::MLDictionaryFeatureProvider stepProvider_;
    MLProgram::MLPredictionOptions stepOptions_;
};

} // namespace Ostrel
