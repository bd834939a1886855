// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Accessibility.h>
#include <PlatformSupport/Clock.h>
#include <Sorvane/InsertionTarget.h>
#include <Sorvane/TranscriptMode.h>

#include <optional>
#include <string>
#include <vector>

// Decides what the automatic mode means for a dictation: an e-mail if the field is the body of a message, plain tidy
// text everywhere else, and whenever anything is unclear.
namespace Sorvane::AutomaticModeDetection {

// What was learned of the field.
struct Context {
    std::optional<std::string> bundleIdentifier {};
    std::optional<std::string> role {};
    std::vector<std::string> labels {}; // its accessible names
    std::optional<std::string> host {}; // of the one web site around it, in a browser
};

// Looks at the target's field, in mail programs and browsers only. Takes at most about 0.12 seconds, and nothing is
// reported but the mode. Main thread.
TranscriptMode captureMode(const std::optional<InsertionTarget>& target, DesktopServices::Accessibility& accessibility,
    PlatformSupport::Clock& clock);

TranscriptMode resolve(const Context& context);

} // namespace Sorvane::AutomaticModeDetection
