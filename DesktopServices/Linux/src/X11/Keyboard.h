// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "X11/XConnection.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <vector>

namespace DesktopLinux {

// What is written on a key.
using KeySymbol = xcb_keysym_t;

namespace KeySymbols {

inline constexpr KeySymbol space = 0x20;
inline constexpr KeySymbol d = 0x64;
inline constexpr KeySymbol v = 0x76;
inline constexpr KeySymbol scrollLock = 0xff14;
inline constexpr KeySymbol insert = 0xff63;
inline constexpr KeySymbol numLock = 0xff7f;
inline constexpr KeySymbol shift = 0xffe1;
inline constexpr KeySymbol control = 0xffe3;
inline constexpr KeySymbol alt = 0xffe9;
inline constexpr KeySymbol super = 0xffeb;

} // namespace KeySymbols

// The keys of the display, as the user has arranged them.
//
// Main thread only.
class Keyboard {
public:
    explicit Keyboard(XConnection& connection);

    // Nothing if no key has the symbol, on any of its levels.
    std::optional<xcb_keycode_t> keyWith(KeySymbol symbol) const;

    // The bit that the modifier key with the symbol sets in the state of other keys; 0 if it is none.
    std::uint16_t modifierBit(KeySymbol symbol) const;

    // All states, of Caps Lock and the like, under which a chord is the same to the user.
    std::vector<std::uint16_t> lockStates() const;

    // Whether a finger is on a key that changes the meaning of others; the locks do not count. Also true if the
    // server does not tell.
    bool isModifierHeld();

    // Whether the server lets programs press keys.
    bool canFakeKeys() const;

    // Sends what pressing or releasing a key sends.
    void fakeKey(xcb_keycode_t key, bool isPressed);

    // Called when the arrangement has changed: another layout, another keyboard.
    [[nodiscard]] XConnection::Subscription observeChanges(std::function<void()> handler);

private:
    void reload();

    XConnection& connection_;
    std::uint8_t xkbEvents_ = 0; // their kind
    xcb_keycode_t firstKey_ = 0;
    size_t symbolsOfKey_ = 0;
    std::vector<KeySymbol> symbols_; // of all keys from the first on
    std::vector<std::vector<xcb_keycode_t>> modifierKeys_; // by the number of the bit
    XConnection::Subscription events_;
};

} // namespace DesktopLinux
