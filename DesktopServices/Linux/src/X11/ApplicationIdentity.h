// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Programs/DesktopEntries.h"
#include "Programs/Process.h"
#include "X11/XConnection.h"

#include <optional>
#include <string>

namespace DesktopLinux {

// How this program is called wherever programs are identified.
inline constexpr std::string_view ownIdentifier = "com.nerith.sorvane";

// With which chord a program pastes.
enum class PasteHabit {
    ordinary, // Control-V
    terminal, // Control-Shift-V: Control-V is for the program in it
    selectionOnly, // Shift-Insert, of what is selected elsewhere instead of the clipboard
};

// Who a program is.
struct ApplicationIdentity {
    std::optional<std::string> name; // in the user's language
    std::optional<std::string> identifier; // of its desktop file
    PasteHabit pasteHabit = PasteHabit::ordinary;
};

// The process behind a window. The X server tells it where it can, as it knows better than the program; otherwise the
// window's own word counts. Nothing if the window is gone, or its process does not run here.
std::optional<ProcessRun> processOfWindow(XConnection& connection, xcb_window_t window);

// What is found out from what the window says of itself, and from the program that it belongs to. A program without a
// desktop file is identified by the class of its windows, in small letters: "xterm".
ApplicationIdentity identify(
    XConnection& connection, DesktopEntries& entries, xcb_window_t window, const ProcessRun& process);

} // namespace DesktopLinux
