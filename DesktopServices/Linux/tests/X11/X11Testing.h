// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "X11/XConnection.h"

#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/SystemClock.h>

#include <gtest/gtest.h>

namespace DesktopLinux {

// A test with this program's connection to the display.
class X11Testing : public testing::Test {
protected:
    // Runs what has happened on the display until now.
    void catchUp()
    {
        connection.synchronise();
        loop.turn();
    }

    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::SystemClock clock;
    XConnection connection { loop.executor() };
};

} // namespace DesktopLinux
