// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Accessibility/BusConnection.h"

#include <functional>
#include <memory>
#include <string>

namespace DesktopLinux {

// Where the session says whether accessibility is switched on, and where its bus is.
//
// Main thread only; waits for nobody but the session bus.
class AccessibilitySwitch {
public:
    // Calls `found` with the address of the accessibility bus, later, and again whenever it was asked for anew.
    AccessibilitySwitch(
        const PlatformSupport::Executor& mainThread, std::function<void(const std::string& address)> found);

    // As far as it was told.
    bool isOn() const { return isOn_; }
    bool isOnForScreenReaders() const { return isOnForScreenReaders_; }

    // At once, and again whenever the service has been started anew.
    void switchOn();

    // Asks for the bus, and how the switch stands.
    void ask();

private:
    void ownerChanged(sdbus::Message& change);
    void askFor(const std::string& property, bool& value);
    void requestAll();
    void set(const std::string& property);
    void setAll();

    std::function<void(const std::string&)> found_;
    std::unique_ptr<BusConnection> session_; // null without a session bus
    std::unique_ptr<sdbus::IProxy> service_;
    sdbus::Slot changes_;
    sdbus::Slot owners_;
    bool isWanted_ = false;
    bool isOn_ = false;
    bool isOnForScreenReaders_ = false;
};

} // namespace DesktopLinux
