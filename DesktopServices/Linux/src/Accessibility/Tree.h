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
    showing = 25,
    singleLine = 26,
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

// The elements of all programs, as they tell of them on the accessibility bus. Calls wait for the program, until the
// deadline. Each is a single one of those that every toolkit answers: to be asked for all properties at once ends some
// programs.
//
// Main thread only.
class Tree {
public:
    explicit Tree(BusConnection& bus)
        : bus_(bus)
    {
    }

    Answer<std::uint32_t> role(const ObjectReference& element, Deadline deadline);
    Answer<ElementStates> states(const ObjectReference& element, Deadline deadline);
    Answer<std::vector<std::string>> interfaces(const ObjectReference& element, Deadline deadline);
    Answer<std::map<std::string, std::string>> attributes(const ObjectReference& element, Deadline deadline);
    Answer<std::map<std::string, std::string>> documentAttributes(const ObjectReference& element, Deadline deadline);
    Answer<std::vector<ObjectReference>> children(const ObjectReference& element, Deadline deadline);
    Answer<ObjectReference> parent(const ObjectReference& element, Deadline deadline);
    Answer<std::string> name(const ObjectReference& element, Deadline deadline);
    Answer<std::string> description(const ObjectReference& element, Deadline deadline);
    Answer<std::string> identifier(const ObjectReference& element, Deadline deadline);
    Answer<std::int32_t> caretOffset(const ObjectReference& element, Deadline deadline);
    Answer<bool> grabFocus(const ObjectReference& element, Deadline deadline);

    // The process of a program; the bus tells it, also of a frozen one.
    Answer<std::uint32_t> process(const std::string& program, Deadline deadline);

private:
    template <typename Value, typename... Arguments>
    Answer<Value> call(const ObjectReference& element, const char* interface, const char* method, Deadline deadline,
        const Arguments&... arguments);
    template <typename Value>
    Answer<Value> property(const ObjectReference& element, const char* interface, const char* name, Deadline deadline);

    BusConnection& bus_;
};

} // namespace DesktopLinux
