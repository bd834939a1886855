// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "OtherProgram.h"
#include "X11/XConnection.h"

#include <PlatformSupport/HandTurnedLoop.h>
#include <PlatformSupport/SystemClock.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>

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

    // Asks another program for what it cannot do unless this one answers it meanwhile.
    std::string serve(OtherProgram& other, const std::string& command)
    {
        other.tell(command);
        std::string answer;
        bool isAnswered = false;
        const std::jthread reader([&] {
            loop.executor().execute([&, line = other.answer()] {
                answer = line;
                isAnswered = true;
            });
        });
        loop.turnUntil([&] { return isAnswered; });
        return answer;
    }

    PlatformSupport::HandTurnedLoop loop;
    PlatformSupport::SystemClock clock;
    XConnection connection { loop.executor() };
};

} // namespace DesktopLinux
