// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Sorvane/DictationPhase.h>

#include <string_view>
#include <vector>

namespace Sorvane {

// The application's icon among the status items of the desktop, and its menu.
struct StatusItem {
    enum class Action { toggle, togglePause, cancel, quit };

    struct Entry {
        std::string_view title;
        Action action;
        bool isEnabled = true;

        bool operator==(const Entry&) const = default;
    };

    std::string_view toolTip;
    std::vector<Entry> menu;

    bool operator==(const StatusItem&) const = default;
};

// canRecord: nothing stands in the way of a new dictation.
StatusItem statusItem(DictationPhase phase, bool canRecord);

} // namespace Sorvane
