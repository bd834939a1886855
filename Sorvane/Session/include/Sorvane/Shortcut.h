// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/HotKey.h>

#include <array>
#include <optional>
#include <string_view>

namespace Sorvane {

// The key chords that the user can choose from.
enum class Shortcut { optionSpace, controlOptionSpace, commandShiftD };

inline constexpr std::array allShortcuts { Shortcut::optionSpace, Shortcut::controlOptionSpace,
    Shortcut::commandShiftD };

// As stored, and what the user reads: "⌥ Space", "⌃ ⌥ Space", "⇧ ⌘ D".
std::string_view rawValue(Shortcut shortcut);
std::optional<Shortcut> shortcut(std::string_view rawValue);

DesktopServices::KeyChord keyChord(Shortcut shortcut);

} // namespace Sorvane
