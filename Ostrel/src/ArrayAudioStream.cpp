// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Ostrel/AudioStream.h>

#include <algorithm>

namespace Ostrel {

ArrayAudioStream::ArrayAudioStream(std::vector<float> samples)
    : samples_(std::move(samples))
{
}

std::optional<int64_t> ArrayAudioStream::totalSamples() const
{
    return static_cast<int64_t>(samples_.size());
}

int64_t ArrayAudioStream::read(int64_t maxFrames, std::vector<float>& samples)
{
    const int64_t count = std::min(static_cast<int64_t>(samples_.size()) - position_, maxFrames);
    if (count < 1)
        return 0;
    const auto first = samples_.begin() + position_;
    samples.insert(samples.end(), first, first + count);
    position_ += count;
    return count;
}

} // namespace Ostrel
