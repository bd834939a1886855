// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <PlatformSupport/Clock.h>
#include <Sorvane/VoiceOrb.h>

#include <QObject>

namespace Sorvane {

// Moves the voice orb with the microphone's level. The view calls advance() before each picture while it is active, and
// draws what stands here then.
//
// Main thread. The clock must outlive it.
class VoiceOrbViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool active READ active NOTIFY activeChanged) // it moves; otherwise it lies still, at 0
    Q_PROPERTY(double energy READ energy NOTIFY advanced) // 0 to 1
    Q_PROPERTY(double phase READ phase NOTIFY advanced) // a running angle, radians

public:
    explicit VoiceOrbViewModel(const PlatformSupport::Clock& clock, QObject* parent = nullptr);

    bool active() const { return active_; }
    double energy() const { return energy_; }
    double phase() const { return phase_; }

    // A new level of the microphone, 0 to 1.
    void follow(double level, bool isRecording);

    Q_INVOKABLE void advance();

signals:
    void activeChanged();
    void advanced();

private:
    const PlatformSupport::Clock& clock_;
    PlatformSupport::Clock::Instant start_;
    OrbResponse response_;
    double target_ = 0; // of the response
    bool active_ = false;
    double energy_ = 0;
    double phase_ = 0;
};

} // namespace Sorvane
