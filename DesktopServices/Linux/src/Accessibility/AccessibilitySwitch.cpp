// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/AccessibilitySwitch.h"

#include <map>
#include <utility>

namespace DesktopLinux {

namespace {

constexpr auto busProgram = "org.a11y.Bus";
constexpr auto busPath = "/org/a11y/bus";
constexpr auto busInterface = "org.a11y.Bus";
constexpr auto statusInterface = "org.a11y.Status";
constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr auto enabledProperty = "IsEnabled";
constexpr auto screenReaderProperty = "ScreenReaderEnabled";

// A call whose answer is given to `use`, if there is one.
template <typename Value>
void call(sdbus::IProxy& service, const sdbus::MethodCall& message, const std::function<void(const Value&)>& use)
{
    service.callMethod(
        message,
        [use](sdbus::MethodReply& reply, const sdbus::Error* error) {
            if (error)
                return;
            try {
                Value value;
                reply >> value;
                use(value);
            } catch (const sdbus::Error&) {
                // It says something else than it should: as if it said nothing.
            }
        },
        0);
}

} // namespace

AccessibilitySwitch::AccessibilitySwitch(
    const PlatformSupport::Executor& mainThread, std::function<void(const std::string&)> found)
    : found_(std::move(found))
    , session_(BusConnection::open(mainThread, ""))
{
    if (!session_)
        return;
    service_ = session_->object(busProgram, busPath);
    changes_ = session_->observe(
        "type='signal',interface='org.freedesktop.DBus.Properties',member='PropertiesChanged',path='/org/a11y/bus'",
        [this](sdbus::Message&) {
            askFor(enabledProperty, isOn_);
            askFor(screenReaderProperty, isOnForScreenReaders_);
        });
    owners_
        = session_->observe("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='org.a11y.Bus'",
            [this](sdbus::Message& change) { ownerChanged(change); });
    ask();
}

void AccessibilitySwitch::ask()
{
    if (!service_)
        return;
    requestAll();
    session_->handle();
}

void AccessibilitySwitch::requestAll()
{
    try {
        call<std::string>(*service_, service_->createMethodCall(busInterface, "GetAddress"), found_);
    } catch (const sdbus::Error&) {
        return; // the session bus is gone
    }
    askFor(enabledProperty, isOn_);
    askFor(screenReaderProperty, isOnForScreenReaders_);
}

// Called while the bus is handled, which sends what is asked for here.
void AccessibilitySwitch::ownerChanged(sdbus::Message& change)
{
    std::string service;
    std::string before;
    std::string after;
    change >> service >> before >> after;
    if (after.empty())
        return;
    if (isWanted_)
        setAll();
    requestAll();
}

void AccessibilitySwitch::askFor(const std::string& property, bool& value)
{
    try {
        auto message = service_->createMethodCall(propertiesInterface, "Get");
        message << std::string(statusInterface) << property;
        call<sdbus::Variant>(*service_, message, [&value](const sdbus::Variant& answer) {
            value = answer.containsValueOfType<bool>() && answer.get<bool>();
        });
    } catch (const sdbus::Error&) {
        value = false;
    }
}

void AccessibilitySwitch::switchOn()
{
    isWanted_ = true;
    if (!service_)
        return;
    setAll();
    ask();
}

void AccessibilitySwitch::setAll()
{
    set(enabledProperty);
    set(screenReaderProperty);
}

void AccessibilitySwitch::set(const std::string& property)
{
    try {
        auto message = service_->createMethodCall(propertiesInterface, "Set");
        message << std::string(statusInterface) << property << sdbus::Variant(true);
        message.dontExpectReply();
        service_->callMethod(message, 0);
    } catch (const sdbus::Error&) {
        // It stays as it was, which is what isOn() tells.
    }
}

} // namespace DesktopLinux
