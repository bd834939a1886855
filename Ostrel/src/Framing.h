// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Configuration.h>
#include <PlatformSupport/Float16.h>

#include <span>

namespace Ostrel {

// Lays a window of at most nSamples samples out as the mel stage takes it.
//
//   rows  [hopLength, nRows]  element (c, r) is sample r x hopLength + c of the padded window
//
// The padded window is nFFT / 2 zeros, the samples, zeros up to nSamples, and for a window of exactly nSamples a
// tail that decays from its last sample by `preemph` per sample, up to min(nRows x hopLength, nPaddedSamples). A
// padded window shorter than its padding is a programming fault.
void frame(std::span<const float> window, const Configuration& configuration, std::span<PlatformSupport::Float16> rows);

} // namespace Ostrel
