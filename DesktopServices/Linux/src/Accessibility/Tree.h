// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include "Accessibility/BusConnection.h"

#include <DesktopServices/AccessibilityError.h>
#include <DesktopServices/ProcessIdentifier.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace DesktopLinux {

// An object of a program: the program's name on the bus, and the object's there.
struct ObjectReference {
    std::string program;
    std::string path;

    auto operator<=>(const ObjectReference&) const = default;
};

// What an element says of itself; by the numbers of the protocol.
enum class ElementState : unsigned {
    active = 1,
    defunct = 6,
    editable = 7,
    focused = 12,
    multiLine = 17,
    sensitive = 24,
    visible = 30,
    readOnly = 43,
};

struct ElementStates {
    std::uint64_t bits = 0;

    bool has(ElementState state) const { return (bits >> static_cast<unsigned>(state)) & 1; }
};

// The result of one call on an element.
template <typename Value> struct Answer {
    DesktopServices::AccessibilityError error = DesktopServices::AccessibilityError::cannotComplete;
    Value value {};

    bool succeeded() const { return error == DesktopServices::AccessibilityError::success; }
};

// A time until which answers are waited for, shared by all calls of one reading.
using Deadline = BusConnection::Instant;

// A call that is under way; given up with this object.
template <typename Value> class PendingAnswer {
public:
    using Wait = std::function<Answer<Value>(Deadline)>;

    explicit PendingAnswer(Wait wait)
        : wait_(std::move(wait))
    {
    }

    // Waits for the program, until the deadline.
    Answer<Value> by(Deadline deadline) const { return wait_(deadline); }

private:
    Wait wait_;
};

// The elements of all programs, as they tell of them on the accessibility bus. A function sends its call at once, so
// that many can be under way before the first answer is waited for. Each is a single one of those that every toolkit
// answers: to be asked for all properties at once ends some programs.
//
// Main thread only; must outlive its answers.
class Tree {
public:
    explicit Tree(BusConnection& bus)
        : bus_(bus)
    {
    }

    PendingAnswer<std::uint32_t> role(const ObjectReference& element);
    PendingAnswer<ElementStates> states(const ObjectReference& element);
    PendingAnswer<std::vector<std::string>> interfaces(const ObjectReference& element);
    PendingAnswer<std::map<std::string, std::string>> attributes(const ObjectReference& element);
    PendingAnswer<std::map<std::string, std::string>> documentAttributes(const ObjectReference& element);
    PendingAnswer<std::vector<ObjectReference>> children(const ObjectReference& element);
    PendingAnswer<ObjectReference> parent(const ObjectReference& element);
    PendingAnswer<std::vector<ObjectReference>> labels(const ObjectReference& element); // the elements that name it
    PendingAnswer<std::string> name(const ObjectReference& element);
    PendingAnswer<std::string> description(const ObjectReference& element);
    PendingAnswer<std::string> identifier(const ObjectReference& element);
    PendingAnswer<std::int32_t> caretOffset(const ObjectReference& element);
    PendingAnswer<bool> grabFocus(const ObjectReference& element);

    // The process of a program; the bus tells it, also of a frozen one.
    PendingAnswer<std::uint32_t> process(const std::string& program);

private:
    template <typename Value, typename... Arguments>
    PendingAnswer<Value> call(
        const ObjectReference& element, const char* interface, const char* method, const Arguments&... arguments);
    template <typename Value>
    PendingAnswer<Value> property(const ObjectReference& element, const char* interface, const char* name);

    BusConnection& bus_;
};

} // namespace DesktopLinux
