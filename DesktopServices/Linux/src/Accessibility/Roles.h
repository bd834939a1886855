// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Accessibility/Tree.h"

#include <cstdint>
#include <string_view>

namespace DesktopLinux {

// Whether text can be entered. Read-only fields of some toolkits say that they are both.
bool takesText(const ElementStates& states);

// The role in the interface's words. Text that cannot be changed is no text field. Anything that is not named there is
// "AXUnknown".
std::string_view roleName(std::uint32_t role, const ElementStates& states);

// Whether what is entered is not to be seen.
bool isSecure(std::uint32_t role);

// A stale element has this role.
bool isInvalid(std::uint32_t role);

bool isWindow(std::uint32_t role);

// A widget of Qt that lies in nothing is a window, whatever its role.
bool mayBeWindow(std::uint32_t role);

bool isApplication(std::uint32_t role);

// A page, or a frame of one, with all that lies in it.
bool isWebPage(std::uint32_t role);

} // namespace DesktopLinux
