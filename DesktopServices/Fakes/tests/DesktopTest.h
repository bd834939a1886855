// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopFakes/FakeDesktop.h>

#include <gtest/gtest.h>

namespace DesktopFakes {

using namespace std::chrono_literals;

// An editor with a window and a field in it, which has the focus.
class DesktopTest : public testing::Test {
protected:
    PlatformSupport::HandTurnedLoop loop_;
    PlatformSupport::HandTurnedClock clock_ { loop_ };
    FakeDesktop desktop_ { loop_, clock_ };
    FakeApplication& editor_ = desktop_.launch({ .name = "Editor", .bundleIdentifier = "org.example.editor" });
    FakeElement& window_ = editor_.openWindow("Shopping");
    FakeElement& field_ = window_.addTextArea("Note");

    DesktopTest() { field_.focus(); }
};

} // namespace DesktopFakes
