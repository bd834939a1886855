// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/Permissions.h>
#include <PlatformSupport/Suspension.h>

#include <cstddef>
#include <vector>

namespace DesktopFakes {

// A user who is asked, and answers when told to. Everything is allowed unless a test says otherwise.
class FakePermissions final : public DesktopServices::Permissions {
public:
    DesktopServices::AuthorizationStatus microphone = DesktopServices::AuthorizationStatus::authorized;
    bool accessibility = true;
    size_t accessibilityPrompts = 0;

    // The user answers the question for the microphone, whoever waits for that goes on.
    void answerMicrophone(bool isAllowed);
    size_t openMicrophoneQuestions() const { return waiting_.size(); }

    DesktopServices::AuthorizationStatus microphoneStatus() const override { return microphone; }
    PlatformSupport::Awaitable<bool> requestMicrophoneAccess() override;
    bool isAccessibilityTrusted() const override { return accessibility; }
    void promptForAccessibility() override { ++accessibilityPrompts; }

private:
    std::vector<PlatformSupport::Resumer> waiting_;
};

} // namespace DesktopFakes
