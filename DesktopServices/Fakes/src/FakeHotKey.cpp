// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeHotKey.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <utility>

namespace DesktopFakes {

using DesktopServices::HotKeyEvent;
using DesktopServices::KeyChord;

void FakeHotKey::setHandler(std::function<void(HotKeyEvent)> handler)
{
    handler_ = std::move(handler);
}

bool FakeHotKey::registerChord(const KeyChord& chord)
{
    PlatformSupport::precondition(!chord_, "a chord is in force already");
    if (std::find(heldByOthers.begin(), heldByOthers.end(), chord) != heldByOthers.end())
        return false;
    chord_ = chord;
    return true;
}

void FakeHotKey::tell(HotKeyEvent event) const
{
    if (chord_ && handler_)
        handler_(event);
}

} // namespace DesktopFakes
