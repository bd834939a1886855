// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Accessibility/FocusTracker.h"
#include "Accessibility/Tree.h"

#include <DesktopServices/Accessibility.h>
#include <PlatformSupport/WeakSelf.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace DesktopLinux {

// Reads elements in the interface's words, from one accessibility bus.
//
// Main thread only.
class Elements {
public:
    explicit Elements(std::unique_ptr<BusConnection> bus, std::function<bool()> isShortcutHeld);

    bool isAlive() const { return bus_->isAlive(); }
    PlatformSupport::WeakReference<Elements> reference() const { return self_.reference(); }

    DesktopServices::AccessibilityReading read(
        const ObjectReference& element, std::string_view attribute, Deadline deadline);
    DesktopServices::AccessibilityError focus(const ObjectReference& element, Deadline deadline);
    DesktopServices::AccessibilityProcess process(const ObjectReference& element, Deadline deadline);

    // The element that has the focus in the process, and the window around it.
    DesktopServices::AccessibilityReading focusedElement(DesktopServices::ProcessIdentifier process, Deadline deadline);
    DesktopServices::AccessibilityReading focusedWindow(DesktopServices::ProcessIdentifier process, Deadline deadline);

private:
    using Reading = DesktopServices::AccessibilityReading;

    Reading roleReading(const ObjectReference& element, Deadline deadline);
    Reading subroleReading(const ObjectReference& element, Deadline deadline);
    Reading rangeReading(const ObjectReference& element, Deadline deadline);
    Reading titleReading(const ObjectReference& element, Deadline deadline);
    Reading identifierReading(const ObjectReference& element, Deadline deadline);
    Reading urlReading(const ObjectReference& element, Deadline deadline);
    Reading stateReading(const ObjectReference& element, ElementState state, Deadline deadline);
    Answer<bool> hasInterface(const ObjectReference& element, std::string_view interface, Deadline deadline);
    Reading elementReading(const Answer<ObjectReference>& answer);
    bool isWindow(const ObjectReference& element, std::uint32_t role, Deadline deadline);
    Answer<ObjectReference> window(const ObjectReference& element, Deadline deadline);
    Answer<ObjectReference> focused(DesktopServices::ProcessIdentifier process, Deadline deadline);
    bool hasFocus(const ObjectReference& element, Deadline deadline);

    std::unique_ptr<BusConnection> bus_;
    std::function<bool()> isShortcutHeld_;
    Tree tree_ { *bus_ };
    FocusTracker focus_ { *bus_, tree_ };
    PlatformSupport::WeakSelf<Elements> self_ { this };
};

// A handle to an element, which is gone with its Elements.
class AtspiElement final : public DesktopServices::AccessibilityObject {
public:
    AtspiElement(PlatformSupport::WeakReference<Elements> elements, ObjectReference reference);

    DesktopServices::AccessibilityReading read(
        std::string_view attribute, DesktopServices::AccessibilityTimeout timeout) const override;
    DesktopServices::AccessibilityError write(
        std::string_view attribute, bool value, DesktopServices::AccessibilityTimeout timeout) override;
    DesktopServices::AccessibilityError perform(
        std::string_view action, DesktopServices::AccessibilityTimeout timeout) override;
    DesktopServices::AccessibilityProcess process(DesktopServices::AccessibilityTimeout timeout) const override;
    bool means(const DesktopServices::AccessibilityObject& other) const override;

private:
    PlatformSupport::WeakReference<Elements> elements_;
    ObjectReference reference_;
};

Deadline deadlineAfter(DesktopServices::AccessibilityTimeout timeout);

} // namespace DesktopLinux
