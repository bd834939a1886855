// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/DictationPhase.h>

#include <optional>
#include <string_view>

namespace Sorvane {

// What the recorder bar shows and does in a phase: the small capsule that floats over everything during a dictation.
//
// Its first control is the voice orb, which pauses, resumes or cancels; beside it stands the one that finishes. Names
// of symbols are those of the icon set.
struct RecorderBar {
    enum class Action { togglePause, cancel, finish };

    struct Control {
        std::string_view label; // also its tool tip
        std::string_view symbol;
        Action action;

        bool operator==(const Control&) const = default;
    };

    static constexpr std::string_view label = "Dictation";
    static constexpr int height = 48; // points

    int width = 0; // points
    std::string_view value; // how the phase is told to somebody who does not see the bar
    Control orb;
    std::optional<Control> stop;
    bool showsProgress = false; // where the orb's symbol would stand, until the pointer is over it
};

RecorderBar recorderBar(DictationPhase phase);

} // namespace Sorvane
