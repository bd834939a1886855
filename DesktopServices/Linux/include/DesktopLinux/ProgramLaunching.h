// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Launching.h>

namespace DesktopLinux {

// Opens web pages with the user's browser, and the pages of the system's settings with whatever program the desktop
// has for them. What it starts belongs to the session, not to this program.
class ProgramLaunching final : public DesktopServices::Launching {
public:
    // True if there is a program for it, which was started; an address of another kind is refused.
    bool open(std::string_view url) override;
};

} // namespace DesktopLinux
