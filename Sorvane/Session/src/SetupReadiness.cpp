// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/SetupReadiness.h>

namespace Sorvane {

std::optional<std::string_view> SetupReadiness::blocker() const
{
    if (phase == DictationPhase::preparing)
        return "On-device models are still loading. You can finish setup while they prepare.";
    if (phase != DictationPhase::idle)
        return "Finish the current dictation before starting another.";
    if (!modelReady)
        return "Finish preparing the on-device models in setup before starting dictation.";
    if (!microphoneAllowed)
        return "Microphone access is missing. Open setup to allow Sorvane to hear you.";
    if (!accessibilityAllowed)
        return "Accessibility access is missing. Open setup to allow typing in other apps. If macOS already shows "
               "Sorvane enabled, remove its old entry and add this installed app again.";
    return std::nullopt;
}

} // namespace Sorvane
