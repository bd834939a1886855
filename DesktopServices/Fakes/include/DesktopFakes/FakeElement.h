// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/AccessibilityElement.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace DesktopFakes {

class FakeApplication;

// What an element looks like to those who read it. An empty text is an attribute without a value.
struct FakeElementLook {
    std::string role;
    std::string subrole {};
    std::string title {};
    std::string description {};
    std::string identifier {};
    std::string url {}; // of a web area
};

// Something on the screen of a fake application: a window, a group, a page, a field. It is made by the element around
// it, which keeps it.
//
// To a program that reads it, it answers as its application does: late or never if that is frozen, and as a thing
// gone once it was removed or the application has ended.
class FakeElement final : public DesktopServices::AccessibilityObject,
                          public std::enable_shared_from_this<FakeElement> {
public:
    using Duration = std::chrono::nanoseconds;

    FakeElement(FakeApplication& application, FakeElement* parent, FakeElementLook look);
    ~FakeElement() override;

    // Building
    FakeElement& add(const FakeElementLook& look);
    FakeElement& addTextField(const std::string& title = {});
    FakeElement& addTextArea(const std::string& title = {});
    FakeElement& addPasswordField(const std::string& title = {});
    FakeElement& addWebArea(const std::string& url);
    FakeElement& addGroup(const std::string& title = {});

    // What the user, or the application, does
    void focus(); // within its application, which need not be in front
    void enable(bool isEnabled = true) { isEnabled_ = isEnabled; }
    void disable() { enable(false); }
    void retitle(const std::string& title) { look_.title = title; }
    void changeRole(const std::string& role) { look_.role = role; }
    void moveInto(FakeElement& parent); // the same element, elsewhere in its application
    void remove(); // with all that is in it
    void type(std::string_view text); // at the caret, instead of what is selected
    void select(std::string_view part); // the first place in the text that reads so

    // What the user sees
    const std::string& text() const { return text_; }
    bool isFocused() const;
    bool acceptsText() const;
    FakeApplication& application() const { return application_; }
    FakeElement* window() const; // around it; null for a window itself

    // Bad behaviour. Scripted answers stand until they are replaced.
    void answer(std::string_view attribute, const DesktopServices::AccessibilityValue& value);
    void answer(std::string_view attribute, FakeElement& element);
    void fail(std::string_view attribute, DesktopServices::AccessibilityError error);
    void answerAfter(std::string_view attribute, Duration duration);
    void onNextRead(std::function<void()> action) { onNextRead_ = std::move(action); } // after its answer
    void refuseFocus() { refusesFocus_ = true; }
    void claimProcess(DesktopServices::AccessibilityProcess process) { process_ = process; }

    DesktopServices::AccessibilityElement handle();

    DesktopServices::AccessibilityReading read(
        std::string_view attribute, DesktopServices::AccessibilityTimeout timeout) const override;
    DesktopServices::AccessibilityError write(
        std::string_view attribute, bool value, DesktopServices::AccessibilityTimeout timeout) override;
    DesktopServices::AccessibilityError perform(
        std::string_view action, DesktopServices::AccessibilityTimeout timeout) override;
    DesktopServices::AccessibilityProcess process(DesktopServices::AccessibilityTimeout timeout) const override;
    bool means(const DesktopServices::AccessibilityObject& other) const override { return this == &other; }

private:
    friend class FakeApplication;
    using Answer = std::function<DesktopServices::AccessibilityReading()>;

    bool isGone() const;
    bool isWindow() const;
    bool canBeFocused() const { return !refusesFocus_ && isEnabled_; }
    DesktopServices::AccessibilityError reach(
        std::string_view attribute, DesktopServices::AccessibilityTimeout timeout) const;
    DesktopServices::AccessibilityReading answerOf(std::string_view attribute) const;
    DesktopServices::AccessibilityReading answerOfItsOwn(std::string_view attribute) const;
    DesktopServices::AccessibilityReading look(std::string_view attribute) const;
    void accept(std::string_view attribute, bool value);

    FakeApplication& application_;
    FakeElement* parent_;
    FakeElementLook look_;
    std::vector<std::shared_ptr<FakeElement>> children_;
    std::string text_;
    size_t selectionStart_ = 0; // in bytes of the text
    size_t selectionLength_ = 0;
    FakeElement* lastFocused_ = nullptr; // of a window: what has the focus in it when it is chosen again
    bool isEnabled_ = true;
    bool isRemoved_ = false;
    bool refusesFocus_ = false;
    std::map<std::string, bool, std::less<>> written_; // attributes of windows and applications that can be written
    std::map<std::string, Answer, std::less<>> scripted_;
    std::map<std::string, Duration, std::less<>> delays_;
    mutable std::function<void()> onNextRead_;
    std::optional<DesktopServices::AccessibilityProcess> process_;
};

} // namespace DesktopFakes
