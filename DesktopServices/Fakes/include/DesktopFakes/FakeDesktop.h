// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopFakes/FakeAccessibility.h>
#include <DesktopFakes/FakeApplication.h>
#include <DesktopFakes/FakeDiagnosticLog.h>
#include <DesktopFakes/FakeElement.h>
#include <DesktopFakes/FakeHotKey.h>
#include <DesktopFakes/FakeKeyEvents.h>
#include <DesktopFakes/FakeLaunching.h>
#include <DesktopFakes/FakeMicrophone.h>
#include <DesktopFakes/FakePasteboard.h>
#include <DesktopFakes/FakePermissions.h>
#include <DesktopFakes/FakeTime.h>
#include <DesktopFakes/FakeWorkspace.h>
#include <DesktopServices/Desktop.h>

namespace DesktopFakes {

// A desktop that behaves like one, and does what it is told.
//
//     FakeDesktop desktop { loop, clock };
//     auto& editor = desktop.launch({ .name = "Editor", .bundleIdentifier = "org.example.editor" });
//     auto& note = editor.openWindow("Shopping").addTextArea("Note");
//     desktop.clickInto(note);
//     desktop.pasteboard.copy("apples");
//     ...
//     EXPECT_EQ(note.text(), "two pounds of pears");
//     EXPECT_EQ(desktop.pasteboard.string(), "apples");
//
// One thread, that of the program under test. The loop and the clock outlive it.
class FakeDesktop {
public:
    FakeDesktop(PlatformSupport::HandTurnedLoop& loop, PlatformSupport::HandTurnedClock& clock);
    explicit FakeDesktop(const FakeTime& time);

    // Starts a program, which comes to the front, as programs do.
    FakeApplication& launch(const FakeApplicationLook& look) { return workspace.launch(look); }

    // The user turns to a program, to a field in one, or to nothing at all.
    void bringToFront(FakeApplication& application) { workspace.bringToFront(application); }
    void clickInto(FakeElement& element);
    void leaveAll() { workspace.leaveAll(); }

    // The program under test, as the desktop sees it.
    FakeApplication& sorvane() { return workspace.sorvane(); }

    DesktopServices::Desktop services();

    FakePasteboard pasteboard;
    FakeWorkspace workspace;
    FakeAccessibility& accessibility;
    FakeKeyEvents keyEvents;
    FakeHotKey hotKey;
    FakePermissions permissions;
    FakeLaunching launching;
    FakeDiagnosticLog diagnosticLog;
    FakeMicrophone microphone { { .sampleRate = 48'000, .channels = 1 } };
};

} // namespace DesktopFakes
