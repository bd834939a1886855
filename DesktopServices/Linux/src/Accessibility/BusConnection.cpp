// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/BusConnection.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <utility>

namespace DesktopLinux {

std::unique_ptr<BusConnection> BusConnection::open(
    const PlatformSupport::Executor& mainThread, const std::string& address, const WhileWaiting& whileWaiting)
{
    try {
        return std::make_unique<BusConnection>(mainThread,
            address.empty() ? sdbus::createSessionBusConnection()
                            : sdbus::createSessionBusConnectionWithAddress(address),
            whileWaiting);
    } catch (const sdbus::Error&) {
        return nullptr;
    }
}

BusConnection::BusConnection(const PlatformSupport::Executor& mainThread,
    std::unique_ptr<sdbus::IConnection> connection, WhileWaiting whileWaiting)
    : connection_(std::move(connection))
    , whileWaiting_(std::move(whileWaiting))
{
    watch_.emplace(mainThread, connection_->getEventLoopPollData().fd, [this] { handle(); });
}

std::unique_ptr<sdbus::IProxy> BusConnection::object(const std::string& program, const std::string& path)
{
    try {
        return isAlive_ ? sdbus::createProxy(*connection_, program, path) : nullptr;
    } catch (const sdbus::Error&) {
        return nullptr; // a name or a path that is none
    }
}

std::unique_ptr<sdbus::IObject> BusConnection::ownObject(const std::string& path)
{
    try {
        return isAlive_ ? sdbus::createObject(*connection_, path) : nullptr;
    } catch (const sdbus::Error&) {
        return nullptr;
    }
}

bool BusConnection::takeName(const std::string& name)
{
    try {
        if (isAlive_)
            connection_->requestName(name);
        return isAlive_;
    } catch (const sdbus::Error&) {
        return false;
    }
}

sdbus::Slot BusConnection::observe(const std::string& rule, std::function<void(sdbus::Message&)> function)
{
    try {
        return isAlive_ ? connection_->addMatch(rule, std::move(function)) : nullptr;
    } catch (const sdbus::Error&) {
        return nullptr;
    }
}

bool BusConnection::waitUntil(const std::function<bool()>& condition, Instant end)
{
    handle();
    while (!condition()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
        if (!isAlive_ || left <= 0)
            return false;
        if (whileWaiting_.work)
            whileWaiting_.work();
        const auto bus = connection_->getEventLoopPollData();
        std::array awaited { pollfd { bus.fd, bus.events, 0 }, pollfd { whileWaiting_.descriptor, POLLIN, 0 } };
        ::poll(awaited.data(), awaited.size(), static_cast<int>(left));
        handle();
    }
    return true;
}

void BusConnection::handle()
{
    try {
        while (isAlive_ && connection_->processPendingRequest()) { }
    } catch (const sdbus::Error&) {
        isAlive_ = false;
        watch_.reset();
    }
}

} // namespace DesktopLinux
