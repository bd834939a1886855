// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Accessibility/Tree.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace DesktopLinux {

// Follows where the focus goes in each program, by what the programs tell.
//
// While the shortcut's key is down, programs say that nothing of theirs has the focus. So the tracker keeps the element
// that had it last; whether it still has it is read from the element.
//
// Main thread only.
class FocusTracker {
public:
    FocusTracker(BusConnection& bus, Tree& tree);

    // The element that got the focus last in the process; one that got it before this program ran is looked for.
    // Nothing if there is none, or the programs do not answer in time.
    std::optional<ObjectReference> lastFocused(DesktopServices::ProcessIdentifier process, Deadline deadline);

private:
    void askForEvents();
    void focusChanged(sdbus::Message& event);
    void programLeft(sdbus::Message& change);
    std::optional<ObjectReference> find(DesktopServices::ProcessIdentifier process, Deadline deadline);
    std::optional<ObjectReference> findBelow(const ObjectReference& top, Deadline deadline);

    BusConnection& bus_;
    Tree& tree_;
    std::map<std::string, std::string> focused_; // the element's path, by program
    std::map<std::string, DesktopServices::ProcessIdentifier> processes_; // by program; asked for once
    std::unique_ptr<sdbus::IProxy> registry_;
    std::vector<sdbus::Slot> events_;
};

} // namespace DesktopLinux
