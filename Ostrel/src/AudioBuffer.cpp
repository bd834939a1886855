// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "AudioBuffer.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>

namespace Ostrel {

AudioBuffer::AudioBuffer(std::vector<float> samples, int64_t base)
    : samples_(std::move(samples))
    , base_(base)
{
}

std::span<const float> AudioBuffer::range(int64_t from, int64_t to) const
{
    PlatformSupport::precondition(base_ <= from && from <= to && to <= end(), "audio outside what is held");
    return std::span(samples_).subspan(static_cast<size_t>(from - base_), static_cast<size_t>(to - from));
}

void AudioBuffer::fill(AudioStream& stream, int64_t target, int64_t leastRead)
{
    while (end() < target && stream.read(std::max(leastRead, target - end()), samples_) > 0) { }
}

void AudioBuffer::release(int64_t index)
{
    if (index <= base_)
        return;
    const int64_t dropped = std::min(index, end()) - base_;
    samples_.erase(samples_.begin(), samples_.begin() + dropped);
    base_ += dropped;
}

} // namespace Ostrel
