// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeWorkspace.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <utility>

namespace DesktopFakes {

using DesktopServices::AccessibilityElement;
using DesktopServices::ProcessIdentifier;
using DesktopServices::RunningApplication;

namespace {

constexpr ProcessIdentifier firstProcess = 100;

}

FakeWorkspace::FakeWorkspace(FakeTime time, FakePasteboard& pasteboard)
    : time_(std::move(time))
    , pasteboard_(pasteboard)
    , accessibility_([this](ProcessIdentifier process) { return elementOf(process); })
{
    launch({ .name = "Sorvane", .bundleIdentifier = "com.nerith.sorvane" });
    leaveAll();
}

FakeApplication& FakeWorkspace::launch(const FakeApplicationLook& look)
{
    const auto process = firstProcess + static_cast<ProcessIdentifier>(applications_.size());
    applications_.push_back(std::make_shared<FakeApplication>(*this, process, look));
    auto& application = *applications_.back();
    bringToFront(application);
    return application;
}

FakeApplication* FakeWorkspace::find(ProcessIdentifier process) const
{
    for (const auto& application : applications_)
        if (application->processIdentifier() == process && !application->isTerminated())
            return application.get();
    return nullptr;
}

void FakeWorkspace::bringToFront(FakeApplication& application)
{
    if (front_ == &application || application.isTerminated())
        return;
    front_ = &application;
    for (const auto& held : std::vector(handlers_))
        if (const auto handler = held.lock())
            (*handler)(application.shared_from_this());
}

void FakeWorkspace::leave(const FakeApplication& application)
{
    if (front_ == &application)
        leaveAll();
}

std::shared_ptr<RunningApplication> FakeWorkspace::frontmostApplication() const
{
    return front_ ? front_->shared_from_this() : nullptr;
}

FakeWorkspace::Subscription FakeWorkspace::observeActivation(ActivationHandler handler)
{
    const auto held = std::make_shared<ActivationHandler>(std::move(handler));
    std::erase_if(handlers_, [](const auto& known) { return known.expired(); });
    handlers_.push_back(held);
    return held;
}

ProcessIdentifier FakeWorkspace::ownProcessIdentifier() const
{
    return firstProcess;
}

AccessibilityElement FakeWorkspace::elementOf(ProcessIdentifier process)
{
    for (const auto& application : applications_)
        if (application->processIdentifier() == process)
            return application->element().handle();
    PlatformSupport::fatalError("no application ever had this process");
}

} // namespace DesktopFakes
