// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Framing.h"

#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Ostrel {

using PlatformSupport::Float16;
using PlatformSupport::precondition;
using PlatformSupport::toFloat16;

namespace {

// The rows of one window, written sample by sample in the order of the padded window.
class PaddedRows {
public:
    PaddedRows(const Configuration& configuration, std::span<Float16> rows)
        : hopLength_(static_cast<size_t>(configuration.hopLength))
        , rowCount_(static_cast<size_t>(configuration.nRows))
        , rows_(rows)
    {
        std::ranges::fill(rows_, Float16 {});
    }

    void moveTo(int64_t index)
    {
        row_ = static_cast<size_t>(index) / hopLength_;
        position_ = static_cast<size_t>(index) % hopLength_;
    }

    void put(std::span<const float> samples)
    {
        std::array<Float16, 256> halves {};
        while (!samples.empty()) {
            const auto piece = samples.first(std::min(samples.size(), halves.size()));
            toFloat16(piece, std::span(halves).first(piece.size()));
            for (size_t i = 0; i < piece.size(); ++i)
                putNext(piece[i] == 0 ? Float16 {} : halves[i]); // no negative zeros
            samples = samples.subspan(piece.size());
        }
    }

private:
    void putNext(Float16 sample)
    {
        rows_[position_ * rowCount_ + row_] = sample;
        if (++position_ == hopLength_) {
            position_ = 0;
            ++row_;
        }
    }

    size_t hopLength_;
    size_t rowCount_;
    std::span<Float16> rows_;
    size_t row_ = 0; // of the next sample
    size_t position_ = 0; // of the next sample in its hop
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
    padded.moveTo(padding);
    padded.put(window.first(static_cast<size_t>(std::min(count, length - padding))));

    if (count < configuration.nSamples || window.back() == 0)
        return;
    padded.moveTo(padding + configuration.nSamples);
    for (int64_t q = configuration.nSamples; q < length - padding; ++q) {
        const auto distance = static_cast<float>(q - configuration.nSamples + 1);
        const float sample = window.back() * std::pow(configuration.preemph, distance);
        padded.put({ &sample, 1 });
    }
}

} // namespace Ostrel
