// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/AudioStream.h>

#include <cstdint>
#include <span>
#include <vector>

namespace Ostrel {

// The part of a stream that is held now: samples base() up to end(), counted from the stream's start.
class AudioBuffer {
public:
    AudioBuffer() = default;
    explicit AudioBuffer(std::vector<float> samples, int64_t base = 0);

    int64_t base() const noexcept { return base_; }
    int64_t end() const noexcept { return base_ + static_cast<int64_t>(samples_.size()); }

    // Samples `from` up to `to`, which must all be held; valid until the next fill() or release().
    std::span<const float> range(int64_t from, int64_t to) const;

    // Reads until end() reaches `target` or the stream ends, asking for at least `leastRead` samples at a time.
    void fill(AudioStream& stream, int64_t target, int64_t leastRead);

    // Drops the samples below `index`, so that base() becomes `index`; one at or below base() changes nothing.
    void release(int64_t index);

private:
    std::vector<float> samples_;
    int64_t base_ = 0;
};

} // namespace Ostrel
