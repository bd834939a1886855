// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace Ostrel {

// Audio that is pulled piece by piece: one channel at the model's rate.
class AudioStream {
public:
    virtual ~AudioStream() = default;

    // Samples that the stream expects to deliver in all, where it can tell. Used for progress and duration only.
    virtual std::optional<int64_t> totalSamples() const = 0;

    // Appends samples and returns how many: about `maxFrames`, though it may be more or less. 0 means that the
    // stream has ended. What it throws ends the transcription.
    virtual int64_t read(int64_t maxFrames, std::vector<float>& samples) = 0;
};

// A stream over samples in memory.
class ArrayAudioStream final : public AudioStream {
public:
    explicit ArrayAudioStream(std::vector<float> samples);

    std::optional<int64_t> totalSamples() const override;
    int64_t read(int64_t maxFrames, std::vector<float>& samples) override;

private:
    std::vector<float> samples_;
    int64_t position_ = 0;
};

} // namespace Ostrel
