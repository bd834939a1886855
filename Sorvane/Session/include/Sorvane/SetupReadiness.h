// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/DictationPhase.h>

#include <optional>
#include <string_view>

namespace Sorvane {

// Whether a dictation may start.
struct SetupReadiness {
    DictationPhase phase = DictationPhase::idle;
    bool modelReady = false; // the speech model is loaded and all preparation is done
    bool microphoneAllowed = false;
    bool accessibilityAllowed = false;

    // Nothing is left to be set up, whatever the phase.
    bool isSetUp() const { return modelReady && microphoneAllowed && accessibilityAllowed; }

    // What stands in the way, in the user's words; nothing when a dictation may start. The phase outranks the models,
    // the models the microphone, the microphone Accessibility.
    std::optional<std::string_view> blocker() const;
};

} // namespace Sorvane
