// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "AudioBuffer.h"
#include "Geometry.h"
#include "Recognizer.h"
#include "Suspects.h"

#include <Ostrel/Transcript.h>
#include <Ostrel/Tunables.h>

#include <algorithm>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace Ostrel {

// One pass over a stream of any length: it decides where windows lie, has them recognized batch by batch, tries
// doubtful ones again, and merges all into one list of words. Memory is bounded by the batch, not by the audio.
//
// Used once. What it refers to must outlive it.
class LongFormRun {
public:
    // `progress` is called with a fraction from 0 to 1 after each window is encoded.
    LongFormRun(Recognizer& recognizer, const Geometry& geometry, std::span<const std::string> vocabulary,
        const Tunables& tunables, AudioStream& stream, const std::function<void(double)>& progress);

    // Errors: what the stream, the recognizer or the callback throws
    Transcript run();

private:
    struct Projections;

    bool isWaiting() const { return nextWindow_ < starts_.size(); }
    void findWindows();
    std::vector<Window> takeBatch();
    void encodeAndDecode(std::vector<Window>& batch);
    void reportProgress(const Window& window) const;
    void retrySuspects(std::vector<Window>& batch);
    void retry(const std::vector<Window*>& suspects);
    void append(const WindowTokens& tokens, int64_t start, int64_t stop);

    int64_t windowStop(int64_t start) const { return std::min(audio_.end(), start + geometry_.windowLength); }
    void readUpTo(int64_t end);

    Recognizer& recognizer_;
    const Geometry& geometry_;
    std::span<const std::string> vocabulary_;
    Tunables tunables_;
    AudioStream& stream_;
    const std::function<void(double)>& progress_;

    AudioBuffer audio_;
    std::vector<int64_t> starts_ { 0 }; // of each window found so far
    size_t nextWindow_ = 0; // index in starts_ of the next one to recognize
    std::vector<Word> words_;
    int failedRetries_ = 0; // in a row
};

} // namespace Ostrel
