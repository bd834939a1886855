// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Framing.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <cmath>

namespace Ostrel {

using PlatformSupport::Float16;
using PlatformSupport::precondition;

namespace {

// The rows of one window under the index of the padded sample.
class PaddedRows {
public:
    PaddedRows(const Configuration& configuration, std::span<Float16> rows)
        : hopLength_(static_cast<size_t>(configuration.hopLength))
        , rowCount_(static_cast<size_t>(configuration.nRows))
        , rows_(rows)
    {
        std::ranges::fill(rows_, Float16 {});
    }

    void put(int64_t index, float sample)
    {
        const auto i = static_cast<size_t>(index);
        if (sample != 0)
            rows_[i % hopLength_ * rowCount_ + i / hopLength_] = PlatformSupport::toFloat16(sample);
    }

private:
    size_t hopLength_;
    size_t rowCount_;
    std::span<Float16> rows_;
};

} // namespace

void frame(std::span<const float> window, const Configuration& configuration, std::span<Float16> rows)
{
    const int64_t padding = configuration.nFFT / 2;
    const int64_t length = std::min(configuration.nRows * configuration.hopLength, configuration.nPaddedSamples);
    const auto count = static_cast<int64_t>(window.size());
    precondition(length >= padding, "a padded window is shorter than its padding");
    precondition(count <= configuration.nSamples, "a window is longer than the model's");

    PaddedRows padded(configuration, rows);
    for (int64_t q = 0; q < std::min(count, length - padding); ++q)
        padded.put(padding + q, window[static_cast<size_t>(q)]);

    if (count < configuration.nSamples || window.back() == 0)
        return;
    for (int64_t q = configuration.nSamples; q < length - padding; ++q) {
        const auto distance = static_cast<float>(q - configuration.nSamples + 1);
        padded.put(padding + q, window.back() * std::pow(configuration.preemph, distance));
    }
}

} // namespace Ostrel
