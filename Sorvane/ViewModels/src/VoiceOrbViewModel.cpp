// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/VoiceOrbViewModel.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace Sorvane {

namespace {

constexpr double turnRate = 2; // radians per second

} // namespace

VoiceOrbViewModel::VoiceOrbViewModel(const PlatformSupport::Clock& clock, QObject* parent)
    : QObject(parent)
    , clock_(clock)
    , start_(clock.now())
{
}

void VoiceOrbViewModel::follow(double level, bool isRecording)
{
    const double target = orbEnergy(level, isRecording, Motion::full);
    if (std::exchange(target_, target) != target)
        response_.retarget(target, clock_.now());
    if (std::exchange(active_, isRecording) == isRecording)
        return;
    emit activeChanged();
    advance();
}

void VoiceOrbViewModel::advance()
{
    const auto now = clock_.now();
    energy_ = active_ ? std::clamp(response_.state(now).value, 0.0, 1.0) : 0;
    phase_ = active_ ? turnRate * std::chrono::duration<double>(now - start_).count() : 0;
    emit advanced();
}

} // namespace Sorvane
