// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/GlobalShortcut.h>

namespace Sorvane {

using DesktopServices::HotKeyEvent;

GlobalShortcut::GlobalShortcut(DesktopServices::HotKey& hotKey)
    : hotKey_(hotKey)
{
    hotKey_.setHandler([this](HotKeyEvent event) {
        if (onEvent)
            onEvent(event == HotKeyEvent::pressed);
    });
}

GlobalShortcut::~GlobalShortcut()
{
    hotKey_.unregister();
    hotKey_.setHandler({});
}

bool GlobalShortcut::registerShortcut(Shortcut shortcut)
{
    hotKey_.unregister();
    return hotKey_.registerChord(keyChord(shortcut));
}

} // namespace Sorvane
