// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/DiagnosticLog.h>

#include <string>
#include <vector>

namespace DesktopFakes {

// Keeps the entries.
class FakeDiagnosticLog final : public DesktopServices::DiagnosticLog {
public:
    struct Entry {
        std::string subsystem;
        std::string category;
        std::string text;

        bool operator==(const Entry&) const = default;
    };

    void error(const DesktopServices::LogCategory& category, std::string_view entry) override
    {
        entries.push_back({ std::string(category.subsystem), std::string(category.category), std::string(entry) });
    }

    std::vector<Entry> entries;
};

} // namespace DesktopFakes
