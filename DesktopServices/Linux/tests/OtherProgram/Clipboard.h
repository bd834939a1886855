// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Display.h"

#include <sstream>

// What the other program does with the clipboard.
class Clipboard {
public:
    explicit Clipboard(Display& display)
        : display_(display)
    {
    }

    std::string run(const std::string& command, std::istringstream&) { return "unknown: " + command; }

private:
    [[maybe_unused]] Display& display_;
};
