// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/AccessibilityTesting.h"
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::MatchesRegex;

namespace {

// The built program's checks of the desktop, in front of a program with fields.
class DesktopCheck : public DesktopLinux::AccessibilityTesting { };

TEST_F(DesktopCheck, FindsTheFieldWithTheFocus)
{
    focus(form, "page");
    const auto outcome = runSorvane({ "--check-focus" });
    EXPECT_THAT(
        outcome.output, MatchesRegex("PASS: focused text field in .+\\. No audio recorded or text inserted\\.\n"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(form.ask("read page"), "[]");
}

TEST_F(DesktopCheck, FindsNoFieldForAPassword)
{
    focus(form, "password");
    const auto outcome = runSorvane({ "--check-focus" });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, MatchesRegex("Focus check failed: .*password.*\n"));
}

TEST_F(DesktopCheck, FindsNoFieldWithoutAccessibility)
{
    const auto outcome = runSorvane({ "--check-focus" }, { { "DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere" } });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.errors, MatchesRegex("Focus check failed: .*Accessibility.*\n"));
}

TEST_F(DesktopCheck, HearsTheMicrophoneTwice)
{
    const auto outcome = runSorvane({ "--check-recording" });
    EXPECT_THAT(outcome.output,
        MatchesRegex("PASS: recording cycle 1, [0-9]+ samples captured and discarded\\.\n"
                     "PASS: recording cycle 2, [0-9]+ samples captured and discarded\\.\n"));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
}

TEST_F(DesktopCheck, AsksForNoMicrophone)
{
    const auto outcome = runSorvane({ "--check-recording" }, { { "PULSE_SERVER", "unix:/nowhere" } });
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "Microphone permission must already be granted to run this check.\n");
}

} // namespace
