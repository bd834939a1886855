// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeDesktop.h>

namespace DesktopFakes {

FakeDesktop::FakeDesktop(PlatformSupport::HandTurnedLoop& loop, PlatformSupport::HandTurnedClock& clock)
    : FakeDesktop(FakeTime(loop, clock))
{
}

FakeDesktop::FakeDesktop(const FakeTime& time)
    : pasteboard(time)
    , workspace(time, pasteboard)
    , accessibility(workspace.accessibility())
    , keyEvents(workspace)
{
}

void FakeDesktop::clickInto(FakeElement& element)
{
    element.focus();
    bringToFront(element.application());
}

DesktopServices::Desktop FakeDesktop::services()
{
    return { accessibility, workspace, pasteboard, keyEvents, hotKey, permissions, launching, diagnosticLog };
}

} // namespace DesktopFakes
