// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopFakes/FakeAccessibility.h>
#include <DesktopFakes/FakeApplication.h>
#include <DesktopFakes/FakePasteboard.h>
#include <DesktopFakes/FakeTime.h>
#include <DesktopServices/Workspace.h>

#include <memory>
#include <vector>

namespace DesktopFakes {

// The programs of a fake desktop, this one among them, and what they share.
class FakeWorkspace final : public DesktopServices::Workspace {
public:
    FakeWorkspace(FakeTime time, FakePasteboard& pasteboard);

    FakeApplication& launch(const FakeApplicationLook& look);
    FakeApplication* find(DesktopServices::ProcessIdentifier process) const; // running; null if there is none

    void bringToFront(FakeApplication& application);
    void leave(const FakeApplication& application); // if it is in front, nothing is in front any more
    void leaveAll() { front_ = nullptr; }

    FakeApplication& sorvane() { return *applications_.front(); }
    const FakeTime& time() const { return time_; }
    FakePasteboard& pasteboard() const { return pasteboard_; }
    FakeAccessibility& accessibility() { return accessibility_; }

    std::shared_ptr<DesktopServices::RunningApplication> frontmostApplication() const override;
    Subscription observeActivation(ActivationHandler handler) override;
    DesktopServices::ProcessIdentifier ownProcessIdentifier() const override;

private:
    DesktopServices::AccessibilityElement elementOf(DesktopServices::ProcessIdentifier process);

    FakeTime time_;
    FakePasteboard& pasteboard_;
    FakeAccessibility accessibility_;
    std::vector<std::shared_ptr<FakeApplication>> applications_; // this program first; ended ones stay
    FakeApplication* front_ = nullptr;
    std::vector<std::weak_ptr<ActivationHandler>> handlers_;
};

} // namespace DesktopFakes
