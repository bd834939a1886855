// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/HotKey.h>
#include <Sorvane/Shortcut.h>

#include <functional>

namespace Sorvane {

// Turns one key chord into presses and releases, whichever application is in front.
//
// Main thread. There is only ever one.
class GlobalShortcut {
public:
    // The hot key must outlive this object.
    explicit GlobalShortcut(DesktopServices::HotKey& hotKey);
    GlobalShortcut(const GlobalShortcut&) = delete;
    GlobalShortcut& operator=(const GlobalShortcut&) = delete;
    ~GlobalShortcut();

    // Whether the chord is in force now. The one before is not any more, in either case.
    bool registerShortcut(Shortcut shortcut);

    std::function<void(bool pressed)> onEvent;

private:
    DesktopServices::HotKey& hotKey_;
};

} // namespace Sorvane
