// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "SessionOnTheDesktop.h"

#include <PlatformSupport/Environment.h>

#include <cstdlib>
#include <fstream>

namespace Sorvane {

namespace {

// Where the window manager has its usual key bindings.
using TakenShortcutOnTheDesktop = SessionOnTheDesktop;

TEST_F(TakenShortcutOnTheDesktop, WorksOnceAnotherIsChosenOrTheWindowManagerLetsGoOfIt)
{
    server.addMicrophone("desk", 48000, 2);
    open();
    untilReady();
    EXPECT_FALSE(controller->shortcutRegistered());

    controller->setShortcut(Shortcut::controlOptionSpace);
    EXPECT_TRUE(controller->shortcutRegistered());
    controller->setShortcut(Shortcut::optionSpace);
    EXPECT_FALSE(controller->shortcutRegistered());
    EXPECT_EQ(controller->status(), "That shortcut is in use. Choose another shortcut.");

    const auto settings = PlatformSupport::environmentVariable("XDG_CONFIG_HOME").value_or("") + "/openbox/rc.xml";
    std::ofstream(settings) << "<openbox_config xmlns=\"http://openbox.org/3.4/rc\"><keyboard/></openbox_config>";
    EXPECT_EQ(std::system("openbox --reconfigure"), 0);
    while (!controller->shortcutRegistered())
        controller->setShortcut(Shortcut::optionSpace);
    expectDictation("line");
}

} // namespace

} // namespace Sorvane
