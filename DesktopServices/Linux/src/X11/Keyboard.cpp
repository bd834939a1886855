// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/Keyboard.h"

#include <xcb/xtest.h>

// The header has a field of that name.
#define explicit explicitComponents // NOLINT(clang-diagnostic-keyword-macro)
#include <xcb/xkb.h>
#undef explicit

#include <algorithm>
#include <array>
#include <utility>

namespace DesktopLinux {

namespace {

constexpr size_t modifierCount = 8;

struct XkbEvent {
    std::uint8_t responseType;
    std::uint8_t kind;
};

// From now on a held key repeats as presses alone, and every change of the keys is told. The kind of those events; 0
// without the extension.
std::uint8_t useKeyboardExtension(XConnection& connection)
{
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_xkb_id);
    if (!extension || !extension->present)
        return 0;
    connection.reply<xcb_xkb_use_extension_reply_t>(
        xcb_xkb_use_extension(connection.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION));
    const auto repeat = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    connection.reply<xcb_xkb_per_client_flags_reply_t>(
        xcb_xkb_per_client_flags(connection.get(), XCB_XKB_ID_USE_CORE_KBD, repeat, repeat, 0, 0, 0));
    const std::uint16_t changes = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    const std::uint16_t parts = 0xff; // of the map: all
    xcb_xkb_select_events(connection.get(), XCB_XKB_ID_USE_CORE_KBD, changes, 0, changes, parts, parts, nullptr);
    return extension->first_event;
}

bool isHeld(const xcb_query_keymap_reply_t& keys, xcb_keycode_t key)
{
    return (keys.keys[key / 8] >> (key % 8)) & 1;
}

} // namespace

Keyboard::Keyboard(XConnection& connection)
    : connection_(connection)
    , xkbEvents_(useKeyboardExtension(connection))
{
    reload();
    events_ = observeChanges([this] { reload(); });
}

std::optional<xcb_keycode_t> Keyboard::keyWith(KeySymbol symbol) const
{
    // The levels in turn: a key that has it without any modifier goes before others.
    for (size_t level = 0; level < symbolsOfKey_; ++level)
        for (size_t i = level; i < symbols_.size(); i += symbolsOfKey_)
            if (symbols_[i] == symbol)
                return static_cast<xcb_keycode_t>(firstKey_ + i / symbolsOfKey_);
    return std::nullopt;
}

std::uint16_t Keyboard::modifierBit(KeySymbol symbol) const
{
    const auto key = keyWith(symbol);
    for (size_t bit = 0; key && bit < modifierKeys_.size(); ++bit)
        if (std::ranges::find(modifierKeys_[bit], *key) != modifierKeys_[bit].end())
            return static_cast<std::uint16_t>(1u << bit);
    return 0;
}

std::vector<std::uint16_t> Keyboard::lockStates() const
{
    std::set<std::uint16_t> states { 0 };
    for (const std::uint16_t lock :
        { std::uint16_t(XCB_MOD_MASK_LOCK), modifierBit(KeySymbols::numLock), modifierBit(KeySymbols::scrollLock) })
        for (const auto state : std::set(states))
            states.insert(state | lock);
    return { states.begin(), states.end() };
}

bool Keyboard::isModifierHeld()
{
    const auto keys = connection_.reply<xcb_query_keymap_reply_t>(xcb_query_keymap(connection_.get()));
    if (!keys)
        return true;
    const auto locks = lockStates().back(); // all of them together
    for (size_t bit = 0; bit < modifierKeys_.size(); ++bit)
        for (const auto key : modifierKeys_[bit])
            if (!((locks >> bit) & 1) && isHeld(*keys, key))
                return true;
    return false;
}

bool Keyboard::canFakeKeys() const
{
    const auto* extension = xcb_get_extension_data(connection_.get(), &xcb_test_id);
    return extension && extension->present;
}

void Keyboard::fakeKey(xcb_keycode_t key, bool isPressed)
{
    xcb_test_fake_input(connection_.get(), isPressed ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key, XCB_CURRENT_TIME,
        connection_.root(), 0, 0, 0);
    connection_.synchronise(); // a key that is never released stays down when this program ends
}

XConnection::Subscription Keyboard::observeChanges(std::function<void()> handler)
{
    return connection_.observe([this, handler = std::move(handler)](const xcb_generic_event_t& event) {
        const bool isChange = kind(event) == XCB_MAPPING_NOTIFY
            || (xkbEvents_ != 0 && kind(event) == xkbEvents_
                && (as<XkbEvent>(event).kind == XCB_XKB_MAP_NOTIFY
                    || as<XkbEvent>(event).kind == XCB_XKB_NEW_KEYBOARD_NOTIFY));
        if (isChange)
            handler();
    });
}

void Keyboard::reload()
{
    const auto* setup = xcb_get_setup(connection_.get());
    firstKey_ = setup->min_keycode;
    const auto symbols = connection_.reply<xcb_get_keyboard_mapping_reply_t>(xcb_get_keyboard_mapping(
        connection_.get(), firstKey_, static_cast<std::uint8_t>(setup->max_keycode - firstKey_ + 1)));
    const auto modifiers
        = connection_.reply<xcb_get_modifier_mapping_reply_t>(xcb_get_modifier_mapping(connection_.get()));
    if (!symbols || !modifiers)
        return; // the old arrangement is the best guess
    symbolsOfKey_ = symbols->keysyms_per_keycode;
    const auto* first = xcb_get_keyboard_mapping_keysyms(symbols.get());
    symbols_.assign(first, first + xcb_get_keyboard_mapping_keysyms_length(symbols.get()));

    const auto* keys = xcb_get_modifier_mapping_keycodes(modifiers.get());
    modifierKeys_.assign(modifierCount, {});
    for (auto& ofBit : modifierKeys_)
        for (int i = 0; i < modifiers->keycodes_per_modifier; ++i, ++keys)
            if (*keys != 0)
                ofBit.push_back(*keys);
}

} // namespace DesktopLinux
