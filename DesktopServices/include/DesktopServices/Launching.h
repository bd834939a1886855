// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string_view>

namespace DesktopServices {

// Hands things to the programs that the user has for them.
//
// Main thread only.
class Launching {
public:
    Launching() = default;
    Launching(const Launching&) = delete;
    Launching& operator=(const Launching&) = delete;
    virtual ~Launching() = default;

    // Opens a web page, or a page of the system's settings. Says whether somebody takes it; waits for nobody.
    virtual bool open(std::string_view url) = 0;
};

} // namespace DesktopServices
