// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Sorvane/RawValue.h>
#include <Sorvane/Shortcut.h>

namespace Sorvane {

namespace {

// Places on the keyboard.
constexpr uint32_t spaceKey = 49;
constexpr uint32_t dKey = 2;

} // namespace

std::string_view rawValue(Shortcut shortcut)
{
    switch (shortcut) {
    case Shortcut::optionSpace:
        return "⌥ Space";
    case Shortcut::controlOptionSpace:
        return "⌃ ⌥ Space";
    case Shortcut::commandShiftD:
        return "⇧ ⌘ D";
    }
    PlatformSupport::fatalError("no such shortcut");
}

std::optional<Shortcut> shortcut(std::string_view rawValue)
{
    return caseWithRawValue(allShortcuts, rawValue);
}

DesktopServices::KeyChord keyChord(Shortcut shortcut)
{
    using namespace DesktopServices::HotKeyModifier;
    switch (shortcut) {
    case Shortcut::optionSpace:
        return { spaceKey, option };
    case Shortcut::controlOptionSpace:
        return { spaceKey, control | option };
    case Shortcut::commandShiftD:
        return { dKey, command | shift };
    }
    PlatformSupport::fatalError("no such shortcut");
}

} // namespace Sorvane
