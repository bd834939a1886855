// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Launching.h>

#include <string>
#include <vector>

namespace DesktopFakes {

// Remembers what it was asked to open.
class FakeLaunching final : public DesktopServices::Launching {
public:
    bool open(std::string_view url) override
    {
        opened.emplace_back(url);
        return true;
    }

    std::vector<std::string> opened;
};

} // namespace DesktopFakes
