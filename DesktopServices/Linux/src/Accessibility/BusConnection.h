// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "DescriptorWatch.h"

#include <DesktopLinux/WhileWaiting.h>

#include <sdbus-c++/sdbus-c++.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace DesktopLinux {

// A connection to a message bus that lives on the main thread: what comes is handled by the main loop, or while the
// main thread waits for an answer.
//
// Once the bus is gone every call fails at once.
class BusConnection {
public:
    using Instant = std::chrono::steady_clock::time_point;
    using Reply = std::function<void(sdbus::MethodReply&, const sdbus::Error*)>;

    // Nothing if the bus cannot be reached. `address` is empty for the user's session bus.
    static std::unique_ptr<BusConnection> open(
        const PlatformSupport::Executor& mainThread, const std::string& address, const WhileWaiting& whileWaiting = {});

    BusConnection(const PlatformSupport::Executor& mainThread, std::unique_ptr<sdbus::IConnection> connection,
        WhileWaiting whileWaiting);
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;

    bool isAlive() const { return isAlive_; }

    // An object of a program on the bus; null once the bus is gone. It must not be destroyed by the reply to a call.
    std::unique_ptr<sdbus::IProxy> object(const std::string& program, const std::string& path);

    // An object of this program's own, which is found once its interface is registered and the program has a name; null
    // once the bus is gone.
    std::unique_ptr<sdbus::IObject> ownObject(const std::string& path);

    // Takes a name by which others find this program. False if another one has it.
    bool takeName(const std::string& name);

    // Calls the function for each message that matches the rule, as long as the slot lives; the connection must
    // outlive it. Waits for the bus, not for programs.
    sdbus::Slot observe(const std::string& rule, std::function<void(sdbus::Message&)> function);

    // Handles what comes until the condition holds. False if it does not in time.
    bool waitUntil(const std::function<bool()>& condition, Instant end);

    // Sends what waits to be sent, and handles what has come.
    void handle();

private:
    std::unique_ptr<sdbus::IConnection> connection_;
    WhileWaiting whileWaiting_;
    bool isAlive_ = true;
    std::optional<DescriptorWatch> watch_;
};

} // namespace DesktopLinux
