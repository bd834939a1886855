// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/AccessibilityElement.h>
#include <DesktopServices/RunningApplication.h>
#include <Sorvane/CodingHarness.h>

#include <memory>
#include <optional>
#include <string>

namespace Sorvane {

// Where the user was typing when a recording began. Everything in it may be gone by the time the text is ready.
struct InsertionTarget {
    DesktopServices::ProcessIdentifier pid = 0;
    std::string name {}; // the application's, or "your app" if it has none
    std::optional<std::string> bundleIdentifier {};
    std::optional<DesktopServices::AccessibilityElement>
        element {}; // the text field; without it nothing can be inserted
    std::optional<CodingHarness> harness {};
    std::shared_ptr<DesktopServices::RunningApplication> application {}; // null without a field
    std::optional<DesktopServices::AccessibilityElement> window {}; // around the field
};

} // namespace Sorvane
