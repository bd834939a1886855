// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Geometry.h"

#include "Arithmetic.h"

#include <Ostrel/OstrelError.h>

#include <algorithm>

namespace Ostrel {

namespace {

constexpr int64_t hopsPerFrame = 8; // the encoder's subsampling, the same for all models
constexpr double cellSeconds = 0.02;

const Configuration& checked(const Configuration& c)
{
    const int64_t largest = std::max(
        { c.sampleRate, c.hopLength, c.nSamples, c.nRows, c.nMels, c.nFFT, c.validFrames, c.encFrames, c.jointHidden,
            c.predHidden, c.predLayers, c.vocabSize, c.decodeWidth, saturatingProduct(c.hopLength, c.nRows),
            saturatingProduct(c.jointHidden, c.encFrames), saturatingProduct(c.predLayers, c.predHidden) });
    if (largest > Geometry::largestNumber)
        throw OstrelError::invalidModel("model metadata has invalid geometry");
    return c;
}

} // namespace

Geometry::Geometry(const Configuration& configuration)
    : sampleRate(checked(configuration).sampleRate)
    , windowLength(configuration.nSamples)
    , frameLength(configuration.hopLength * hopsPerFrame)
    , secondsPerFrame(static_cast<double>(frameLength) / static_cast<double>(sampleRate))
    , cellLength(std::max<int64_t>(truncated(static_cast<double>(sampleRate) * cellSeconds), 1))
    , encFrames(configuration.encFrames)
    , projectionSize(static_cast<size_t>(configuration.jointHidden * configuration.encFrames))
{
}

int64_t Geometry::validFrames(int64_t samples) const noexcept
{
    return std::clamp<int64_t>((samples + frameLength - 1) / frameLength, 1, encFrames);
}

} // namespace Ostrel
