// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Regex/Trimming.h>
#include <Sorvane/DictationRules.h>

namespace Sorvane::DictationRules {

bool shouldStop(DictationPhase phase, ActivationMode mode, bool pressed)
{
    switch (mode) {
    case ActivationMode::toggle:
        return pressed && (phase == DictationPhase::recording || phase == DictationPhase::paused);
    case ActivationMode::hold:
        return !pressed && phase == DictationPhase::recording;
    }
    PlatformSupport::fatalError("no such activation mode");
}

std::optional<std::string> usableTranscript(std::string_view text)
{
    std::string trimmed(Regex::trimmed(text));
    return trimmed.empty() ? std::nullopt : std::optional(std::move(trimmed));
}

} // namespace Sorvane::DictationRules
