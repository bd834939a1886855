// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PublishedModels.h"
#include "SessionOnTheDesktop.h"

#include <DesktopServices/AccessibilityNames.h>
#include <PlatformSupport/Environment.h>

#include <optional>

namespace Sorvane {

namespace {

constexpr auto accessibilityMissing
    = "Accessibility access is missing. Open setup to allow typing in other apps. If macOS already shows Sorvane "
      "enabled, remove its old entry and add this installed app again.";

// A desktop on which nothing runs at first but the X server and a session bus.
class StartUpOnTheDesktop : public SessionOnTheDesktop {
protected:
    // What it starts in its turn must not keep its output open.
    void startAccessibility()
    {
        accessibility.emplace(
            Words { "sh", "-c", "exec /usr/libexec/at-spi-bus-launcher --launch-immediately >/dev/null 2>&1" });
    }
    void startWindowManager() { windowManager.emplace(Words { "openbox", "--sm-disable" }); }

    // A program that was started when all was there.
    void openForm()
    {
        form.emplace(FORM_PROGRAM);
        form->ask("focus line");
        const auto application = desktop.bus.accessibility().applicationElement(form->process());
        while (!desktop.isInFront(*form)
            || !application.read(DesktopServices::AccessibilityAttribute::focusedElement).succeeded())
            desktop.loop.turn();
    }

    std::optional<RunningProgram> accessibility;
    std::optional<RunningProgram> windowManager;
    std::optional<RealDesktop::OtherProgram> form;
};

TEST_F(StartUpOnTheDesktop, GetsByUntilAllIsThere)
{
    desktop.bus.enable(); // as the application does
    server.addMicrophone("desk", 48000, 2);
    open();
    while (!controller->microphoneAllowed())
        controller->refreshPermissions();
    pressShortcut();
    untilStatusIs(accessibilityMissing);
    EXPECT_EQ(windowsShown, 1);

    startAccessibility();
    untilReady();
    pressShortcut();
    untilStatusIs("Place the cursor in a text field in another app, then try again.");

    startWindowManager();
    openForm();
    begin();
    untilCaptured(0.3);
    end();
    ASSERT_TRUE(controller->status().starts_with("Inserted in ")) << controller->status();
    EXPECT_EQ(form->ask("read line"), "[spoken words]");
}

// The whole application, without each of the services.
TEST(ApplicationOnABareDesktop, IsReadyAllTheSame)
{
    const PublishedModels models;
    auto environment = models.environment();
    environment["PULSE_SERVER"] = "unix:/nowhere";
    for (const auto& bus : { PlatformSupport::environmentVariable("DBUS_SESSION_BUS_ADDRESS").value_or(""),
             std::string("unix:path=/nowhere") }) {
        environment["DBUS_SESSION_BUS_ADDRESS"] = bus;
        RunningProgram sorvane { { TEST_PINS_PROGRAM }, environment };
        while (sorvane.output().find("Ready for dictation.\n") == std::string::npos)
            ASSERT_TRUE(sorvane.hasWritten()) << sorvane.finish().errors;
        PlatformSupport::HandTurnedLoop loop;
        DesktopLinux::XConnection usersConnection { loop.executor() };
        DesktopLinux::Keyboard keyboard { usersConnection };
        for (const bool isPressed : { true, false })
            for (const auto key : { DesktopLinux::KeySymbols::alt, DesktopLinux::KeySymbols::space })
                keyboard.fakeKey(keyboard.keyWith(key).value_or(0), isPressed);
        sorvane.interrupt();
        EXPECT_EQ(sorvane.finish().status, 0);
    }
}

} // namespace

} // namespace Sorvane
