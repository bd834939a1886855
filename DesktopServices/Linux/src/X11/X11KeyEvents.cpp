// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "X11/X11KeyEvents.h"

#include "X11/X11Application.h"

#include <algorithm>
#include <utility>

namespace DesktopLinux {

using DesktopServices::KeyDirection;
using DesktopServices::KeyEvent;
using DesktopServices::ProcessIdentifier;
using PlatformSupport::Awaitable;
using namespace std::chrono_literals;

namespace {

// Nobody holds a shortcut longer than that after having spoken.
constexpr auto longestWaitForModifiers = 2s;
constexpr auto modifierStep = 10ms;

// The keys in the order of their pressing.
std::vector<KeySymbol> pasteChord(PasteHabit habit)
{
    switch (habit) {
    case PasteHabit::ordinary:
        return { KeySymbols::control, KeySymbols::v };
    case PasteHabit::terminal:
        return { KeySymbols::control, KeySymbols::shift, KeySymbols::v };
    case PasteHabit::selectionOnly:
        return { KeySymbols::shift, KeySymbols::insert };
    }
    return {};
}

} // namespace

class X11KeyEvents::Source final : public DesktopServices::KeyEventSource {
public:
    explicit Source(const X11KeyEvents& services)
        : keyboard_(services.keyboard_)
        , hotKey_(services.hotKey_)
        , workspace_(services.workspace_)
        , pasteboard_(services.pasteboard_)
        , clock_(services.clock_)
    {
    }
    ~Source() override { release(); }

    std::optional<KeyEvent> makeEvent(std::uint16_t virtualKey, KeyDirection direction) override
    {
        if (virtualKey != DesktopServices::virtualKeyV)
            return std::nullopt;
        return KeyEvent { .virtualKey = virtualKey, .direction = direction };
    }

    Awaitable<bool> untilModifiersAreUp() override
    {
        const auto end = clock_.now() + longestWaitForModifiers;
        bool isHeld = true;
        while ((isHeld = keyboard_.isModifierHeld() || hotKey_.isHeld()) && clock_.now() < end)
            co_await clock_.sleep(modifierStep);
        co_return !isHeld;
    }

    void post(const KeyEvent& event, ProcessIdentifier process) override
    {
        release();
        if (event.direction == KeyDirection::down && event.flags == DesktopServices::commandMask)
            press(process);
    }

private:
    void press(ProcessIdentifier process)
    {
        const auto application = workspace_.frontmost();
        if (!application || application->processIdentifier() != process)
            return;
        const auto habit = habitOnThisKeyboard(application->pasteHabit());
        std::vector<xcb_keycode_t> keys;
        for (const auto symbol : pasteChord(habit)) {
            const auto key = keyboard_.keyWith(symbol);
            if (!key)
                return; // half a chord means something else
            keys.push_back(*key);
        }
        if (habit == PasteHabit::selectionOnly)
            pasteboard_.lendToPrimarySelection();
        for (const auto key : keys)
            keyboard_.fakeKey(key, true);
        pressed_ = std::move(keys);
    }

    // Keyboards of other scripts may have no V. Shift-Insert pastes nearly everywhere, be it what is selected.
    PasteHabit habitOnThisKeyboard(PasteHabit habit) const
    {
        return keyboard_.keyWith(KeySymbols::v) ? habit : PasteHabit::selectionOnly;
    }

    void release()
    {
        std::ranges::reverse(pressed_);
        for (const auto key : std::exchange(pressed_, {}))
            keyboard_.fakeKey(key, false);
    }

    Keyboard& keyboard_;
    const X11HotKey& hotKey_;
    const X11Workspace& workspace_;
    X11Pasteboard& pasteboard_;
    PlatformSupport::Clock& clock_;
    std::vector<xcb_keycode_t> pressed_;
};

std::unique_ptr<DesktopServices::KeyEventSource> X11KeyEvents::makePrivateSource()
{
    return keyboard_.canFakeKeys() ? std::make_unique<Source>(*this) : nullptr;
}

} // namespace DesktopLinux
