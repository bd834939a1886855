// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "X11/Keyboard.h"
#include "X11/XConnection.h"

#include <DesktopServices/HotKey.h>

#include <optional>

namespace DesktopLinux {

// A chord that the X server keeps for this program. Option is the Alt key, Command the Super key.
//
// Main thread only.
class X11HotKey final : public DesktopServices::HotKey {
public:
    X11HotKey(XConnection& connection, Keyboard& keyboard);
    ~X11HotKey() override;

    void setHandler(std::function<void(DesktopServices::HotKeyEvent)> handler) override;
    bool registerChord(const DesktopServices::KeyChord& chord) override;
    void unregister() override;

    // Whether the chord's key is down. For so long the keyboard is this program's: no other has the focus, or gets
    // keys.
    bool isHeld() const { return heldKey_.has_value(); }

private:
    struct Grab {
        xcb_keycode_t key = 0;
        std::uint16_t modifiers = 0;

        bool operator==(const Grab&) const = default;
    };

    std::optional<Grab> wantedGrab() const;
    bool grab();
    void ungrab();
    void keyboardChanged();
    void handle(const xcb_generic_event_t& event);

    XConnection& connection_;
    Keyboard& keyboard_;
    std::function<void(DesktopServices::HotKeyEvent)> handler_;
    std::optional<DesktopServices::KeyChord> chord_; // to be in force on any arrangement of the keys
    std::optional<Grab> grab_; // in force
    std::optional<xcb_keycode_t> heldKey_;
    XConnection::Subscription changes_;
    XConnection::Subscription events_;
};

} // namespace DesktopLinux
