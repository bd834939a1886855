// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/Tree.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace DesktopLinux {

using DesktopServices::AccessibilityError;

namespace {

constexpr auto accessibleInterface = "org.a11y.atspi.Accessible";
constexpr auto componentInterface = "org.a11y.atspi.Component";
constexpr auto documentInterface = "org.a11y.atspi.Document";
constexpr auto textInterface = "org.a11y.atspi.Text";

// More than any element has. What a program says of itself is bounded by this.
constexpr size_t mostChildren = 10'000;

using RawReference = sdbus::Struct<std::string, sdbus::ObjectPath>;

// Who answers that there is no such thing says so in time.
AccessibilityError errorNamed(std::string_view name)
{
    const auto endsWith = [&](std::string_view ending) { return name.ends_with(ending); };
    if (endsWith(".ServiceUnknown") || endsWith(".NameHasNoOwner") || endsWith(".UnknownObject")
        || endsWith(".Disconnected"))
        return AccessibilityError::invalidElement;
    if (endsWith(".UnknownMethod") || endsWith(".UnknownInterface") || endsWith(".UnknownProperty")
        || endsWith(".NotSupported") || endsWith(".InvalidArgs"))
        return AccessibilityError::attributeUnsupported;
    return AccessibilityError::cannotComplete;
}

// "/null" is how the protocol says that there is none.
ObjectReference reference(const RawReference& raw)
{
    const auto& path = raw.get<1>();
    return path == "/org/a11y/atspi/null" ? ObjectReference() : ObjectReference { raw.get<0>(), path };
}

// Every element has these methods, so that one without them is none.
template <typename Value> Answer<Value> ofEveryElement(Answer<Value> answer)
{
    if (answer.error == AccessibilityError::attributeUnsupported)
        answer.error = AccessibilityError::invalidElement;
    return answer;
}

template <typename To, typename From, typename Convert> Answer<To> converted(const Answer<From>& from, Convert convert)
{
    return { from.error, from.succeeded() ? convert(from.value) : To() };
}

} // namespace

template <typename Value, typename... Arguments>
Answer<Value> Tree::call(const ObjectReference& element, const char* interface, const char* method, Deadline deadline,
    const Arguments&... arguments)
{
    const auto object = bus_.object(element.program, element.path);
    if (!object)
        return { AccessibilityError::invalidElement };
    std::optional<Answer<Value>> answer;
    const auto read = [&](sdbus::MethodReply& reply, const sdbus::Error* error) {
        answer.emplace();
        try {
            if (!error)
                reply >> answer->value;
            answer->error = error ? errorNamed(error->getName()) : AccessibilityError::success;
        } catch (const sdbus::Error&) {
            answer->error = AccessibilityError::failure; // it says something else than it should
        }
    };
    try {
        auto message = object->createMethodCall(interface, method);
        ((message << arguments), ...);
        object->callMethod(message, read, 0);
    } catch (const sdbus::Error&) {
        return { AccessibilityError::invalidElement };
    }
    bus_.waitUntil([&] { return answer.has_value(); }, deadline);
    return answer.value_or(Answer<Value>());
}

template <typename Value>
Answer<Value> Tree::property(const ObjectReference& element, const char* interface, const char* name, Deadline deadline)
{
    const auto answer = call<sdbus::Variant>(
        element, "org.freedesktop.DBus.Properties", "Get", deadline, std::string(interface), std::string(name));
    if (answer.succeeded() && !answer.value.containsValueOfType<Value>())
        return { AccessibilityError::failure };
    return converted<Value>(answer, [](const sdbus::Variant& value) { return value.get<Value>(); });
}

Answer<std::uint32_t> Tree::role(const ObjectReference& element, Deadline deadline)
{
    return ofEveryElement(call<std::uint32_t>(element, accessibleInterface, "GetRole", deadline));
}

Answer<ElementStates> Tree::states(const ObjectReference& element, Deadline deadline)
{
    const auto words
        = ofEveryElement(call<std::vector<std::uint32_t>>(element, accessibleInterface, "GetState", deadline));
    auto states = converted<ElementStates>(words, [](const auto& value) {
        ElementStates all;
        for (size_t i = 0; i < std::min<size_t>(value.size(), 2); ++i)
            all.bits |= std::uint64_t { value[i] } << (32 * i);
        return all;
    });
    if (states.succeeded() && states.value.has(ElementState::defunct))
        states.error = AccessibilityError::invalidElement;
    return states;
}

Answer<std::vector<std::string>> Tree::interfaces(const ObjectReference& element, Deadline deadline)
{
    return ofEveryElement(call<std::vector<std::string>>(element, accessibleInterface, "GetInterfaces", deadline));
}

Answer<std::map<std::string, std::string>> Tree::attributes(const ObjectReference& element, Deadline deadline)
{
    return call<std::map<std::string, std::string>>(element, accessibleInterface, "GetAttributes", deadline);
}

Answer<std::map<std::string, std::string>> Tree::documentAttributes(const ObjectReference& element, Deadline deadline)
{
    return call<std::map<std::string, std::string>>(element, documentInterface, "GetAttributes", deadline);
}

Answer<std::vector<ObjectReference>> Tree::children(const ObjectReference& element, Deadline deadline)
{
    const auto raw
        = ofEveryElement(call<std::vector<RawReference>>(element, accessibleInterface, "GetChildren", deadline));
    return converted<std::vector<ObjectReference>>(raw, [](const auto& value) {
        std::vector<ObjectReference> references;
        for (const auto& child : value)
            if (references.size() < mostChildren)
                references.push_back(reference(child));
        return references;
    });
}

Answer<ObjectReference> Tree::parent(const ObjectReference& element, Deadline deadline)
{
    auto answer = converted<ObjectReference>(
        property<RawReference>(element, accessibleInterface, "Parent", deadline), reference);
    if (answer.succeeded() && answer.value.path.empty())
        answer.error = AccessibilityError::noValue;
    return answer;
}

Answer<std::string> Tree::name(const ObjectReference& element, Deadline deadline)
{
    return property<std::string>(element, accessibleInterface, "Name", deadline);
}

Answer<std::string> Tree::description(const ObjectReference& element, Deadline deadline)
{
    return property<std::string>(element, accessibleInterface, "Description", deadline);
}

Answer<std::string> Tree::identifier(const ObjectReference& element, Deadline deadline)
{
    return property<std::string>(element, accessibleInterface, "AccessibleId", deadline);
}

Answer<std::int32_t> Tree::caretOffset(const ObjectReference& element, Deadline deadline)
{
    return property<std::int32_t>(element, textInterface, "CaretOffset", deadline);
}

Answer<bool> Tree::grabFocus(const ObjectReference& element, Deadline deadline)
{
    return call<bool>(element, componentInterface, "GrabFocus", deadline);
}

Answer<std::uint32_t> Tree::process(const std::string& program, Deadline deadline)
{
    const ObjectReference bus { "org.freedesktop.DBus", "/org/freedesktop/DBus" };
    return call<std::uint32_t>(bus, "org.freedesktop.DBus", "GetConnectionUnixProcessID", deadline, program);
}

} // namespace DesktopLinux
