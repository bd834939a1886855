// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Microphone.h>
#include <DesktopServices/Permissions.h>
#include <PlatformSupport/Awaitable.h>

#include <memory>

namespace DesktopLinux {

// What the sound server offers: PulseAudio, or PipeWire in its place. It may come and go while this program runs.
//
// Connecting begins at once, on a thread of its own, and is tried again as long as it fails. Engines may outlive this.
class Sound {
public:
    Sound();
    Sound(const Sound&) = delete;
    Sound& operator=(const Sound&) = delete;
    ~Sound();

    DesktopServices::Microphone& microphone();

    // Authorized if there is a microphone, denied if there is none or the server refuses us, not determined until one
    // or the other is known: for two seconds at most. Any thread; waits for nobody.
    DesktopServices::AuthorizationStatus microphoneStatus() const;

    // Waits until that is determined.
    //
    // Errors: CancellationError
    PlatformSupport::Awaitable<DesktopServices::AuthorizationStatus> determineMicrophoneStatus() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace DesktopLinux
