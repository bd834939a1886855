// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/ActivationMode.h>
#include <Sorvane/DictationPhase.h>

#include <optional>
#include <string>
#include <string_view>

// The rules of a dictation that need nothing but their arguments.
namespace Sorvane::DictationRules {

// Whether an event of the shortcut ends the recording. To toggle, a press ends a running or a paused recording; while
// holding, a release ends only a running one.
bool shouldStop(DictationPhase phase, ActivationMode mode, bool pressed);

// The transcript without whitespace and newlines around it, or nothing if that leaves nothing.
std::optional<std::string> usableTranscript(std::string_view text);

} // namespace Sorvane::DictationRules
