// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

namespace Sorvane {

// Where a dictation stands.
enum class DictationPhase {
    idle, // nothing runs; a dictation may start
    preparing, // the models are being prepared
    recording, // the microphone feeds samples and the meter runs
    paused, // the microphone is off, the samples so far are kept
    transcribing, // the recording has ended and is being finished
};

} // namespace Sorvane
