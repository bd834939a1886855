// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopFakes/FakeElement.h>
#include <DesktopServices/RunningApplication.h>

#include <memory>
#include <optional>
#include <string>

namespace DesktopFakes {

class FakeWorkspace;

struct FakeApplicationLook {
    std::optional<std::string> name {};
    std::optional<std::string> bundleIdentifier {};
    bool isBuiltOnElectron = false;
};

// A program on a fake desktop, with its windows and the one element that has its focus.
class FakeApplication final : public DesktopServices::RunningApplication,
                              public std::enable_shared_from_this<FakeApplication> {
public:
    using Duration = FakeElement::Duration;

    FakeApplication(
        FakeWorkspace& workspace, DesktopServices::ProcessIdentifier process, const FakeApplicationLook& look);

    // What it, or the user, does
    FakeElement& openWindow(const std::string& title); // which becomes its focused window
    void freeze(); // answers nobody; keys wait for it
    void thaw();
    void quit(); // the object stays, as others may hold it
    void becomeAnother(const FakeApplicationLook& look) { look_ = look; } // what it says of itself changes

    // How it answers
    void comeToFrontAfter(Duration duration) { activationDelay_ = duration; }
    void ignoreActivation() { ignoresActivation_ = true; }
    void pasteAfter(Duration duration) { pasteDelay_ = duration; } // fetches the clipboard's text so late

    // The element that stands for the whole program.
    FakeElement& element() { return *element_; }

    // What has the focus here; null where nothing has it.
    FakeElement* focusedElement() const { return focused_; }
    FakeElement* focusedWindow() const { return focusedWindow_; }
    size_t timesActivated() const { return timesActivated_; }

    DesktopServices::ProcessIdentifier processIdentifier() const override { return process_; }
    std::optional<std::string> localizedName() const override { return look_.name; }
    std::optional<std::string> bundleIdentifier() const override { return look_.bundleIdentifier; }
    bool isTerminated() const override { return isTerminated_; }
    bool isBuiltOnElectron() const override { return look_.isBuiltOnElectron; }
    void activate() override;

private:
    friend class FakeElement;
    friend class FakeKeyEvents;

    void focus(FakeElement* element, FakeElement* window);
    void focusWindow(FakeElement& window);
    void forget(const FakeElement& element);
    void pasteKeyPressed();
    void paste();

    FakeWorkspace& workspace_;
    DesktopServices::ProcessIdentifier process_;
    FakeApplicationLook look_;
    std::shared_ptr<FakeElement> element_;
    FakeElement* focused_ = nullptr;
    FakeElement* focusedWindow_ = nullptr;
    bool isFrozen_ = false;
    bool isTerminated_ = false;
    bool ignoresActivation_ = false;
    Duration activationDelay_ {};
    Duration pasteDelay_ {};
    size_t timesActivated_ = 0;
    size_t waitingPastes_ = 0;
};

} // namespace DesktopFakes
