// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>

namespace Sorvane {

// How strongly the voice orb moves for a level of the microphone, 0 (still) to 1.
//
// The level is the recorder's meter, 0 at -55 dB and 1 at 0 dB. The orb's range is narrower, from -48 dB to -12 dB:
// the breath of a quiet room moves nothing, and loud speech is as far as it goes.
enum class Motion { full, reduced };
double orbEnergy(double level, bool isRecording, Motion motion);

// A critically damped spring, described by where it started: it goes to its target without a jump and without ever
// passing it from rest.
//
//     x'' = -w^2 (x - target) - 2 w x'      with w the natural frequency
//
// Value type. Instants are the clock's.
class OrbResponse {
public:
    using Instant = PlatformSupport::Clock::Instant;

    struct State {
        double value = 0;
        double velocity = 0; // per second
    };

    State state(Instant now) const;

    // Goes on to another target, 0 to 1, from where it is.
    void retarget(double energy, Instant now);

private:
    State initial_;
    double target_ = 0;
    Instant started_ = Instant::min();
};

} // namespace Sorvane
