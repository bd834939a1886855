// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/X11HotKey.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace DesktopLinux {

using DesktopServices::HotKeyEvent;
using DesktopServices::KeyChord;
namespace HotKeyModifier = DesktopServices::HotKeyModifier;

namespace {

// By their places on the keyboard, which the interface names. The user looks for what is written on the key.
std::optional<KeySymbol> symbolAtPlace(std::uint32_t keyCode)
{
    constexpr std::array<std::pair<std::uint32_t, KeySymbol>, 2> symbols { {
        { 49, KeySymbols::space },
        { 2, KeySymbols::d },
    } };
    for (const auto& [place, symbol] : symbols)
        if (place == keyCode)
            return symbol;
    return std::nullopt;
}

constexpr std::array<std::pair<std::uint32_t, KeySymbol>, 4> modifierKeys { {
    { HotKeyModifier::command, KeySymbols::super },
    { HotKeyModifier::shift, KeySymbols::shift },
    { HotKeyModifier::option, KeySymbols::alt },
    { HotKeyModifier::control, KeySymbols::control },
} };

} // namespace

X11HotKey::X11HotKey(XConnection& connection, Keyboard& keyboard)
    : connection_(connection)
    , keyboard_(keyboard)
    , changes_(keyboard.observeChanges([this] { keyboardChanged(); }))
    , events_(connection.observe([this](const xcb_generic_event_t& event) { handle(event); }))
{
}

X11HotKey::~X11HotKey()
{
    ungrab();
}

void X11HotKey::setHandler(std::function<void(HotKeyEvent)> handler)
{
    handler_ = std::move(handler);
}

bool X11HotKey::registerChord(const KeyChord& chord)
{
    unregister();
    chord_ = chord;
    if (!grab())
        chord_.reset();
    return chord_.has_value();
}

// A key that is down stays this program's until it is up, which is told as ever.
void X11HotKey::unregister()
{
    ungrab();
    chord_.reset();
}

std::optional<X11HotKey::Grab> X11HotKey::wantedGrab() const
{
    const auto symbol = symbolAtPlace(chord_->keyCode);
    const auto key = symbol ? keyboard_.keyWith(*symbol) : std::nullopt;
    if (!key)
        return std::nullopt;
    Grab grab { .key = *key };
    for (const auto& [modifier, modifierKey] : modifierKeys) {
        if (!(chord_->modifierMask & modifier))
            continue;
        const auto bit = keyboard_.modifierBit(modifierKey);
        if (bit == 0)
            return std::nullopt;
        grab.modifiers |= bit;
    }
    return grab;
}

// All or nothing: a chord that works only while Num Lock is off is none.
bool X11HotKey::grab()
{
    grab_ = wantedGrab();
    if (!grab_)
        return false;
    std::vector<xcb_void_cookie_t> requests;
    for (const auto locks : keyboard_.lockStates())
        requests.push_back(xcb_grab_key_checked(connection_.get(), false, connection_.root(), grab_->modifiers | locks,
            grab_->key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    const auto refused = std::ranges::count_if(requests, [&](auto request) { return !connection_.succeeds(request); });
    if (refused > 0)
        ungrab();
    return refused == 0;
}

// On return another program can take the chord.
void X11HotKey::ungrab()
{
    const auto old = std::exchange(grab_, std::nullopt);
    if (!old)
        return;
    xcb_ungrab_key(connection_.get(), old->key, connection_.root(), XCB_MOD_MASK_ANY);
    connection_.synchronise();
}

void X11HotKey::keyboardChanged()
{
    if (!chord_ || wantedGrab() == grab_)
        return;
    ungrab();
    grab();
}

// The modifier keys may be released before the key itself, so that a release is known by its key alone.
void X11HotKey::handle(const xcb_generic_event_t& event)
{
    if (kind(event) != XCB_KEY_PRESS && kind(event) != XCB_KEY_RELEASE)
        return;
    const auto key = as<xcb_key_press_event_t>(event).detail;
    const bool isPress = kind(event) == XCB_KEY_PRESS;
    if (isPress ? !grab_ || grab_->key != key : heldKey_ != key)
        return;
    heldKey_ = isPress ? std::optional(key) : std::nullopt;
    const auto handler = handler_; // it may set another one
    if (handler)
        handler(isPress ? HotKeyEvent::pressed : HotKeyEvent::released);
}

} // namespace DesktopLinux
