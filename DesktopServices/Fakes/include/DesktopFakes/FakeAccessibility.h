// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Accessibility.h>

#include <functional>
#include <string>
#include <vector>

namespace DesktopFakes {

// What was asked of an element.
struct AccessibilityCall {
    std::string what; // "read AXRole", "write AXMain true", "perform AXRaise", "process"
    std::string title; // the element's
    DesktopServices::AccessibilityTimeout timeout {};

    bool operator==(const AccessibilityCall&) const = default;
};

// The way to the elements of a fake desktop, which remembers who asked what.
class FakeAccessibility final : public DesktopServices::Accessibility {
public:
    using Lookup = std::function<DesktopServices::AccessibilityElement(DesktopServices::ProcessIdentifier)>;

    explicit FakeAccessibility(Lookup lookup)
        : lookup_(std::move(lookup))
    {
    }

    DesktopServices::AccessibilityElement applicationElement(DesktopServices::ProcessIdentifier process) override
    {
        return lookup_(process);
    }

    std::vector<AccessibilityCall> calls;

    // What was asked, without the reads: "write AXMain true", "perform AXRaise".
    std::vector<std::string> changes() const;
    size_t readsOf(std::string_view attribute) const;

private:
    Lookup lookup_;
};

} // namespace DesktopFakes
