// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/AccessibilitySwitch.h"
#include "Accessibility/Elements.h"

#include <DesktopLinux/AccessibilityBus.h>
#include <DesktopServices/AccessibilityNames.h>

#include <utility>

namespace DesktopLinux {

namespace AccessibilityAttribute = DesktopServices::AccessibilityAttribute;
namespace AccessibilityRole = DesktopServices::AccessibilityRole;
using DesktopServices::AccessibilityElement;
using DesktopServices::AccessibilityError;
using DesktopServices::AccessibilityObject;
using DesktopServices::AccessibilityProcess;
using DesktopServices::AccessibilityReading;
using DesktopServices::AccessibilityTimeout;
using DesktopServices::ProcessIdentifier;

struct AccessibilityBus::Parts final : DesktopServices::Accessibility {
    Parts(PlatformSupport::Executor executor, std::function<bool()> isHeld, WhileWaiting work)
        : mainThread(std::move(executor))
        , isShortcutHeld(std::move(isHeld))
        , whileWaiting(std::move(work))
    {
    }

    AccessibilityElement applicationElement(ProcessIdentifier process) override;

    // The first bus stays; another one is taken once it is gone.
    void found(const std::string& address)
    {
        if (isAlive())
            return;
        elements.reset();
        if (auto bus = BusConnection::open(mainThread, address, whileWaiting))
            elements = std::make_unique<Elements>(std::move(bus), isShortcutHeld);
    }
    bool isAlive() const { return elements && elements->isAlive(); }

    PlatformSupport::Executor mainThread;
    std::function<bool()> isShortcutHeld;
    WhileWaiting whileWaiting;
    std::unique_ptr<Elements> elements; // null until the bus is found
    AccessibilitySwitch status { mainThread, [this](const std::string& address) { found(address); } };
    PlatformSupport::WeakSelf<Parts> self { this };
};

namespace {

// What stands for a whole program: only the focus in it is asked for.
template <typename Bus> class ApplicationElement final : public AccessibilityObject {
public:
    ApplicationElement(PlatformSupport::WeakReference<Bus> bus, ProcessIdentifier process)
        : bus_(std::move(bus))
        , process_(process)
    {
    }

    AccessibilityReading read(std::string_view attribute, AccessibilityTimeout timeout) const override
    {
        auto* const bus = bus_.get();
        if (!bus || !bus->isAlive())
            return { bus ? AccessibilityError::apiDisabled : AccessibilityError::invalidElement };
        if (attribute == AccessibilityAttribute::role)
            return { AccessibilityError::success, std::string(AccessibilityRole::application) };
        if (attribute == AccessibilityAttribute::focusedElement)
            return bus->elements->focusedElement(process_, deadlineAfter(timeout));
        if (attribute == AccessibilityAttribute::focusedWindow)
            return bus->elements->focusedWindow(process_, deadlineAfter(timeout));
        if (attribute == AccessibilityAttribute::manualAccessibility)
            return { AccessibilityError::success, bus->status.isOn() && bus->status.isOnForScreenReaders() };
        return { AccessibilityError::attributeUnsupported };
    }

    // Programs built on a browser engine look whether a screen reader is there.
    AccessibilityError write(std::string_view attribute, bool value, AccessibilityTimeout) override
    {
        auto* const bus = bus_.get();
        if (!bus)
            return AccessibilityError::invalidElement;
        if (attribute != AccessibilityAttribute::manualAccessibility || !value)
            return AccessibilityError::attributeUnsupported;
        bus->status.switchOn();
        return AccessibilityError::success;
    }

    AccessibilityError perform(std::string_view, AccessibilityTimeout) override
    {
        return AccessibilityError::actionUnsupported;
    }

    AccessibilityProcess process(AccessibilityTimeout) const override
    {
        return { AccessibilityError::success, process_ };
    }

    bool means(const AccessibilityObject& other) const override
    {
        const auto* const application = dynamic_cast<const ApplicationElement*>(&other);
        return application && application->process_ == process_;
    }

private:
    PlatformSupport::WeakReference<Bus> bus_;
    ProcessIdentifier process_;
};

} // namespace

AccessibilityElement AccessibilityBus::Parts::applicationElement(ProcessIdentifier process)
{
    return AccessibilityElement(std::make_shared<ApplicationElement<Parts>>(self.reference(), process));
}

AccessibilityBus::AccessibilityBus(
    const PlatformSupport::Executor& mainThread, std::function<bool()> isShortcutHeld, WhileWaiting whileWaiting)
    : parts_(std::make_unique<Parts>(mainThread, std::move(isShortcutHeld), std::move(whileWaiting)))
{
}

AccessibilityBus::~AccessibilityBus() = default;

DesktopServices::Accessibility& AccessibilityBus::accessibility()
{
    return *parts_;
}

bool AccessibilityBus::isEnabled() const
{
    return parts_->isAlive() && parts_->status.isOn();
}

void AccessibilityBus::enable()
{
    parts_->status.switchOn();
}

} // namespace DesktopLinux
