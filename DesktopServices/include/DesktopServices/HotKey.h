// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>
#include <functional>

namespace DesktopServices {

// A key by its place on the keyboard, and the modifier keys to be held with it.
struct KeyChord {
    std::uint32_t keyCode = 0;
    std::uint32_t modifierMask = 0;

    bool operator==(const KeyChord&) const = default;
};

// The modifier keys of a KeyChord.
namespace HotKeyModifier {

inline constexpr std::uint32_t command = 0x100;
inline constexpr std::uint32_t shift = 0x200;
inline constexpr std::uint32_t option = 0x800;
inline constexpr std::uint32_t control = 0x1000;

} // namespace HotKeyModifier

enum class HotKeyEvent { pressed, released };

// The one chord that reaches this program whichever application is in front.
//
// Main thread only, the handler too.
class HotKey {
public:
    HotKey() = default;
    HotKey(const HotKey&) = delete;
    HotKey& operator=(const HotKey&) = delete;
    virtual ~HotKey() = default;

    // Who is told of every press and release, those of a key that repeats by being held included. It stays for all
    // later registrations; an empty handler ends it.
    virtual void setHandler(std::function<void(HotKeyEvent)> handler) = 0;

    // Whether the chord is in force now: false if another program holds it. None may be in force before.
    virtual bool registerChord(const KeyChord& chord) = 0;

    // Gives the chord back; nothing happens if none is in force.
    virtual void unregister() = 0;
};

} // namespace DesktopServices
