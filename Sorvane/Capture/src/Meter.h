// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <span>

namespace Sorvane {

// How loud a piece of audio is, 0..1, in proportion to the decibels of its mean power: 0 at -55 dB and below, 1 at 0 dB
// (a full-scale square wave) and above. No samples at all are silence.
//
// Example: a full-scale sine has the mean power 0.5, -3 dB, and gives 0.945.
double meterLevel(std::span<const float> samples);

} // namespace Sorvane
