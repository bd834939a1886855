// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/AccessibilityElement.h>

namespace DesktopServices {

// The way into the elements of other programs. Whether this program is trusted to go there is told by Permissions.
//
// Main thread only.
class Accessibility {
public:
    Accessibility() = default;
    Accessibility(const Accessibility&) = delete;
    Accessibility& operator=(const Accessibility&) = delete;
    virtual ~Accessibility() = default;

    // The element that stands for a whole application. It is made without asking the application, so it may turn out
    // to be gone.
    virtual AccessibilityElement applicationElement(ProcessIdentifier process) = 0;
};

} // namespace DesktopServices
