// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <DesktopServices/AccessibilityError.h>
#include <DesktopServices/ProcessIdentifier.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace DesktopServices {

class AccessibilityObject;
struct AccessibilityProcess;
struct AccessibilityReading;

// How long a call waits for another program. A call that is given no time of its own has this one, so that none waits
// without end.
using AccessibilityTimeout = std::chrono::nanoseconds;
inline constexpr AccessibilityTimeout ordinaryAccessibilityTimeout = std::chrono::milliseconds(500);

// A handle to something on the screen of another program: a field, a window, the program itself. Handles are equal
// when they mean the same thing. The thing may be gone at any time, and its program may not answer: each call says so
// by its error, within its timeout.
//
// Main thread only, which waits for the answer.
class AccessibilityElement {
public:
    explicit AccessibilityElement(std::shared_ptr<AccessibilityObject> object);

    AccessibilityReading read(
        std::string_view attribute, AccessibilityTimeout timeout = ordinaryAccessibilityTimeout) const;
    AccessibilityError write(
        std::string_view attribute, bool value, AccessibilityTimeout timeout = ordinaryAccessibilityTimeout) const;
    AccessibilityError perform(
        std::string_view action, AccessibilityTimeout timeout = ordinaryAccessibilityTimeout) const;

    // The process that the element belongs to.
    AccessibilityProcess process(AccessibilityTimeout timeout = ordinaryAccessibilityTimeout) const;

    bool operator==(const AccessibilityElement& other) const;

private:
    std::shared_ptr<AccessibilityObject> object_;
};

struct AccessibilityRange {
    std::int64_t location = 0;
    std::int64_t length = 0;

    bool operator==(const AccessibilityRange&) const = default;
};

// As its text says, which is not checked.
struct AccessibilityURL {
    std::string text;

    bool operator==(const AccessibilityURL&) const = default;
};

// std::monostate is a value of a kind that nobody here asks for.
using AccessibilityValue
    = std::variant<std::monostate, bool, std::string, AccessibilityRange, AccessibilityURL, AccessibilityElement>;

// What came back when an attribute was read.
struct AccessibilityReading {
    AccessibilityError error = AccessibilityError::success;
    AccessibilityValue value {}; // only with success

    bool succeeded() const { return error == AccessibilityError::success; }

    // The value, if the call succeeded and the value is of this kind: std::string, AccessibilityElement, ...
    template <typename Kind> std::optional<Kind> as() const
    {
        const auto* held = std::get_if<Kind>(&value);
        return held && succeeded() ? std::optional<Kind>(*held) : std::nullopt;
    }
};

struct AccessibilityProcess {
    AccessibilityError error = AccessibilityError::success;
    ProcessIdentifier identifier = 0; // only with success
};

// What a handle stands for: implemented by each desktop, called by AccessibilityElement alone. Every function comes
// back within the timeout: with cannotComplete if the other program has not answered by then, with invalidElement once
// the element is gone.
class AccessibilityObject {
public:
    AccessibilityObject() = default;
    AccessibilityObject(const AccessibilityObject&) = delete;
    AccessibilityObject& operator=(const AccessibilityObject&) = delete;
    virtual ~AccessibilityObject() = default;

    virtual AccessibilityReading read(std::string_view attribute, AccessibilityTimeout timeout) const = 0;
    virtual AccessibilityError write(std::string_view attribute, bool value, AccessibilityTimeout timeout) = 0;
    virtual AccessibilityError perform(std::string_view action, AccessibilityTimeout timeout) = 0;
    virtual AccessibilityProcess process(AccessibilityTimeout timeout) const = 0;

    // Asks nobody, so that it holds for elements that are gone.
    virtual bool means(const AccessibilityObject& other) const = 0;
};

} // namespace DesktopServices
