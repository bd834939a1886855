// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace Sorvane {

// What the global shortcut does: a press starts and another stops, or the key is held while speaking.
enum class ActivationMode { toggle, hold };

inline constexpr std::array allActivationModes { ActivationMode::toggle, ActivationMode::hold };

// As stored, and what the user reads: "Press to start / stop", "Hold to speak".
std::string_view rawValue(ActivationMode mode);
std::optional<ActivationMode> activationMode(std::string_view rawValue);

} // namespace Sorvane
