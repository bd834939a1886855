// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Accessibility.h>
#include <DesktopServices/DiagnosticLog.h>
#include <DesktopServices/HotKey.h>
#include <DesktopServices/KeyEvents.h>
#include <DesktopServices/Launching.h>
#include <DesktopServices/Pasteboard.h>
#include <DesktopServices/Permissions.h>
#include <DesktopServices/Workspace.h>

namespace DesktopServices {

// The services of one desktop, which outlive whoever is given them. The microphone is a service by itself: it has
// threads of its own.
struct Desktop {
    Accessibility& accessibility;
    Workspace& workspace;
    Pasteboard& pasteboard;
    KeyEvents& keyEvents;
    HotKey& hotKey;
    Permissions& permissions;
    Launching& launching;
    DiagnosticLog& diagnosticLog;
};

} // namespace DesktopServices
