// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/DictationPhase.h>

#include <string>
#include <string_view>
#include <vector>

namespace Sorvane {

// The application's icon among the status items of the desktop, and its menu.
struct StatusItem {
    enum class Action { none, toggle, togglePause, cancel, setup, quit };

    struct Entry {
        std::string title;
        Action action;
        bool isEnabled = true;

        bool operator==(const Entry&) const = default;
    };

    std::string_view toolTip;
    std::vector<Entry> menu;

    bool operator==(const StatusItem&) const = default;
};

// What it is made from.
struct StatusItemState {
    DictationPhase phase = DictationPhase::idle;
    bool canRecord = false; // nothing stands in the way of a new dictation
    bool setupComplete = false;
    std::string status {}; // the one line that the user sees, above all that can be done
};

StatusItem statusItem(const StatusItemState& state);

} // namespace Sorvane
