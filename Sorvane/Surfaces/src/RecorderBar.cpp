// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/RecorderBar.h>

namespace Sorvane {

namespace {

using Action = RecorderBar::Action;

constexpr RecorderBar::Control pause { "Pause dictation", "pause.fill", Action::togglePause };
constexpr RecorderBar::Control resume { "Resume dictation", "play.fill", Action::togglePause };
constexpr RecorderBar::Control cancel { "Cancel dictation", "xmark", Action::cancel };
constexpr RecorderBar::Control stop { "Stop recording", "stop.fill", Action::finish };

constexpr int orbAndStop = 96; // points
constexpr int orbAlone = 48; // points

} // namespace

RecorderBar recorderBar(DictationPhase phase)
{
    switch (phase) {
    case DictationPhase::recording:
        return { orbAndStop, "Recording", pause, stop, false };
    case DictationPhase::paused:
        return { orbAndStop, "Paused", resume, stop, false };
    case DictationPhase::transcribing:
        return { orbAlone, "Finishing transcript", cancel, std::nullopt, true };
    case DictationPhase::idle:
    case DictationPhase::preparing:
        break;
    }
    return { orbAndStop, "Finishing transcript", pause, stop, false };
}

} // namespace Sorvane
