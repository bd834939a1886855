// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/DiagnosticLog.h>
#include <PlatformSupport/FileDescriptor.h>

#include <filesystem>

namespace DesktopLinux {

// Writes to the system journal if there is one that takes the entry at once, and otherwise to standard error.
//
// In the journal an entry has the fields SORVANE_SUBSYSTEM and SORVANE_CATEGORY.
class JournalLog final : public DesktopServices::DiagnosticLog {
public:
    explicit JournalLog(std::filesystem::path socket = "/run/systemd/journal/socket");

    void error(const DesktopServices::LogCategory& category, std::string_view entry) override;

private:
    bool sendToJournal(std::string_view message) const;

    std::filesystem::path socket_;
    PlatformSupport::FileDescriptor descriptor_;
};

} // namespace DesktopLinux
