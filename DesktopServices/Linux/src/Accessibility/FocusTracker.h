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

    // The element of the process that got the focus last, as far as the program told it.
    std::optional<ObjectReference> lastFocused(DesktopServices::ProcessIdentifier process, Deadline deadline);

    // The element that says now that it has the focus, looked for in the active window of the process.
    std::optional<ObjectReference> find(DesktopServices::ProcessIdentifier process, Deadline deadline);

private:
    void askForEvents();
    void focusChanged(sdbus::Message& event);
    void programLeft(sdbus::Message& change);
    void learnPresentFocus();
    std::optional<DesktopServices::ProcessIdentifier> processOf(const std::string& program, Deadline deadline);

    BusConnection& bus_;
    Tree& tree_;
    std::map<std::string, std::string> focused_; // the element's path, by program
    std::map<std::string, DesktopServices::ProcessIdentifier> processes_; // by program; asked for once
    std::unique_ptr<sdbus::IProxy> registry_;
    std::vector<sdbus::Slot> events_;
};

} // namespace DesktopLinux
