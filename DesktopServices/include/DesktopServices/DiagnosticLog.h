// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string_view>

namespace DesktopServices {

// Under what an entry is found in the system's log.
struct LogCategory {
    std::string_view subsystem;
    std::string_view category;

    bool operator==(const LogCategory&) const = default;
};

// For those who look into a fault. It never holds what the user said or wrote.
//
// Main thread only.
class DiagnosticLog {
public:
    DiagnosticLog() = default;
    DiagnosticLog(const DiagnosticLog&) = delete;
    DiagnosticLog& operator=(const DiagnosticLog&) = delete;
    virtual ~DiagnosticLog() = default;

    virtual void error(const LogCategory& category, std::string_view entry) = 0;
};

} // namespace DesktopServices
