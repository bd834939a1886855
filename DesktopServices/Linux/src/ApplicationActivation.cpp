// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/BusConnection.h"
#include "X11/ApplicationIdentity.h"

#include <DesktopLinux/ApplicationActivation.h>

#include <map>
#include <string>
#include <utility>

namespace DesktopLinux {

namespace {

// The identifier with slashes, as the interface's description has it.
constexpr auto objectPath = "/com/nerith/sorvane";
constexpr auto interface = "org.freedesktop.Application";
constexpr auto activate = "Activate";
constexpr std::chrono::microseconds patience = std::chrono::seconds(2);

using PlatformData = std::map<std::string, sdbus::Variant>;

} // namespace

struct ApplicationActivation::Parts {
    Parts(std::unique_ptr<BusConnection> bus, std::function<void()> activated)
        : session(std::move(bus))
        , object(session->ownObject(objectPath))
    {
        if (!object)
            return;
        object->registerMethod(activate).onInterface(interface).implementedAs(
            [activated = std::move(activated)](const PlatformData&) { activated(); });
        object->finishRegistration();
        session->takeName(std::string(ownIdentifier));
        session->handle();
    }

    std::unique_ptr<BusConnection> session;
    std::unique_ptr<sdbus::IObject> object;
};

ApplicationActivation::ApplicationActivation(
    const PlatformSupport::Executor& mainThread, std::function<void()> activated)
{
    if (auto session = BusConnection::open(mainThread, ""))
        parts_ = std::make_unique<Parts>(std::move(session), std::move(activated));
}

ApplicationActivation::~ApplicationActivation() = default;

bool ApplicationActivation::activateRunning()
{
    try {
        const auto session = sdbus::createSessionBusConnection();
        const auto running = sdbus::createProxy(*session, std::string(ownIdentifier), objectPath);
        running->callMethod(activate).onInterface(interface).withTimeout(patience).withArguments(PlatformData {});
        return true;
    } catch (const sdbus::Error&) {
        return false;
    }
}

} // namespace DesktopLinux
