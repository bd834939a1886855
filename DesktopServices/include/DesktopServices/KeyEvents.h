// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/ProcessIdentifier.h>
#include <PlatformSupport/Awaitable.h>

#include <cstdint>
#include <memory>
#include <optional>

namespace DesktopServices {

// Keys by their place on the keyboard, and modifier keys by their bit.
inline constexpr std::uint16_t virtualKeyV = 9;
inline constexpr std::uint64_t commandMask = 0x100000;

enum class KeyDirection { down, up };

// A key that no finger presses. A desktop translates the chord into its own: a paste is Command-V here everywhere.
struct KeyEvent {
    std::uint16_t virtualKey = 0;
    KeyDirection direction = KeyDirection::down;
    std::uint64_t flags = 0; // the modifier keys that count as held

    bool operator==(const KeyEvent&) const = default;
};

// Makes and posts events whose modifier keys are only those of their flags.
//
// Main thread only.
class KeyEventSource {
public:
    KeyEventSource() = default;
    KeyEventSource(const KeyEventSource&) = delete;
    KeyEventSource& operator=(const KeyEventSource&) = delete;
    virtual ~KeyEventSource() = default;

    // Without flags at first. Nothing if the system refuses.
    virtual std::optional<KeyEvent> makeEvent(std::uint16_t virtualKey, KeyDirection direction) = 0;

    // Where the user's own modifier keys would mix into the events: waits until they are up, such as those of the
    // shortcut that has just been released. False if they stay down for longer than a bound of the implementation's
    // own.
    //
    // Errors: CancellationError, if the task is cancelled while it waits
    virtual PlatformSupport::Awaitable<bool> untilModifiersAreUp() = 0;

    // Sends the event to the process. Nobody tells whether it arrives.
    virtual void post(const KeyEvent& event, ProcessIdentifier process) = 0;
};

class KeyEvents {
public:
    KeyEvents() = default;
    KeyEvents(const KeyEvents&) = delete;
    KeyEvents& operator=(const KeyEvents&) = delete;
    virtual ~KeyEvents() = default;

    // A source of its own, which knows nothing of the keys that the user holds. Null if the system refuses.
    virtual std::unique_ptr<KeyEventSource> makePrivateSource() = 0;
};

} // namespace DesktopServices
