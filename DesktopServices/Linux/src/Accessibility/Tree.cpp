// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/Tree.h"

#include <algorithm>
#include <memory>
#include <optional>
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
using RawRelation = sdbus::Struct<std::uint32_t, std::vector<RawReference>>;

// By the number of the protocol.
constexpr std::uint32_t labelledBy = 2;

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

// What becomes of an answer when it is there.
template <typename To, typename From, typename Convert>
PendingAnswer<To> then(PendingAnswer<From> from, Convert convert)
{
    return PendingAnswer<To>(
        [from = std::move(from), convert](Deadline deadline) { return convert(from.by(deadline)); });
}

template <typename To, typename From, typename Convert>
PendingAnswer<To> converted(PendingAnswer<From> from, Convert convert)
{
    return then<To>(std::move(from), [convert](const Answer<From>& answer) {
        return Answer<To> { answer.error, answer.succeeded() ? convert(answer.value) : To() };
    });
}

// Every element has these methods, so that one without them is none.
template <typename Value> PendingAnswer<Value> ofEveryElement(PendingAnswer<Value> from)
{
    return then<Value>(std::move(from), [](Answer<Value> answer) {
        if (answer.error == AccessibilityError::attributeUnsupported)
            answer.error = AccessibilityError::invalidElement;
        return answer;
    });
}

template <typename Value> struct CallUnderWay {
    std::optional<Answer<Value>> answer;
    std::unique_ptr<sdbus::IProxy> object; // with it, the reply is not waited for any more

    void take(sdbus::MethodReply& reply, const sdbus::Error* error)
    {
        answer.emplace();
        try {
            if (!error)
                reply >> answer->value;
            answer->error = error ? errorNamed(error->getName()) : AccessibilityError::success;
        } catch (const sdbus::Error&) {
            answer->error = AccessibilityError::failure; // it says something else than it should
        }
    }
};

ElementStates statesFrom(const std::vector<std::uint32_t>& words)
{
    ElementStates all;
    for (size_t i = 0; i < std::min<size_t>(words.size(), 2); ++i)
        all.bits |= std::uint64_t { words[i] } << (32 * i);
    return all;
}

std::vector<ObjectReference> references(const std::vector<RawReference>& raw)
{
    std::vector<ObjectReference> all;
    for (const auto& child : raw)
        if (all.size() < mostChildren)
            all.push_back(reference(child));
    return all;
}

} // namespace

template <typename Value, typename... Arguments>
PendingAnswer<Value> Tree::call(
    const ObjectReference& element, const char* interface, const char* method, const Arguments&... arguments)
{
    const auto call = std::make_shared<CallUnderWay<Value>>();
    try {
        call->object = bus_.object(element.program, element.path);
        if (call->object) {
            auto message = call->object->createMethodCall(interface, method);
            ((message << arguments), ...);
            call->object->callMethod(
                message,
                [under = call.get()](
                    sdbus::MethodReply& reply, const sdbus::Error* error) { under->take(reply, error); },
                0);
        }
    } catch (const sdbus::Error&) {
        call->object.reset();
    }
    if (!call->object)
        call->answer = Answer<Value> { AccessibilityError::invalidElement };
    return PendingAnswer<Value>([this, call](Deadline deadline) {
        bus_.waitUntil([&] { return call->answer.has_value(); }, deadline);
        return call->answer.value_or(Answer<Value>());
    });
}

template <typename Value>
PendingAnswer<Value> Tree::property(const ObjectReference& element, const char* interface, const char* name)
{
    auto variant = call<sdbus::Variant>(
        element, "org.freedesktop.DBus.Properties", "Get", std::string(interface), std::string(name));
    return then<Value>(std::move(variant), [](const Answer<sdbus::Variant>& answer) -> Answer<Value> {
        if (!answer.succeeded())
            return { answer.error };
        if (!answer.value.containsValueOfType<Value>())
            return { AccessibilityError::failure };
        return { AccessibilityError::success, answer.value.get<Value>() };
    });
}

PendingAnswer<std::uint32_t> Tree::role(const ObjectReference& element)
{
    return ofEveryElement(call<std::uint32_t>(element, accessibleInterface, "GetRole"));
}

PendingAnswer<ElementStates> Tree::states(const ObjectReference& element)
{
    auto words = ofEveryElement(call<std::vector<std::uint32_t>>(element, accessibleInterface, "GetState"));
    return then<ElementStates>(
        converted<ElementStates>(std::move(words), statesFrom), [](Answer<ElementStates> states) {
            if (states.succeeded() && states.value.has(ElementState::defunct))
                states.error = AccessibilityError::invalidElement;
            return states;
        });
}

PendingAnswer<std::vector<std::string>> Tree::interfaces(const ObjectReference& element)
{
    return ofEveryElement(call<std::vector<std::string>>(element, accessibleInterface, "GetInterfaces"));
}

PendingAnswer<std::map<std::string, std::string>> Tree::attributes(const ObjectReference& element)
{
    return call<std::map<std::string, std::string>>(element, accessibleInterface, "GetAttributes");
}

PendingAnswer<std::map<std::string, std::string>> Tree::documentAttributes(const ObjectReference& element)
{
    return call<std::map<std::string, std::string>>(element, documentInterface, "GetAttributes");
}

PendingAnswer<std::vector<ObjectReference>> Tree::children(const ObjectReference& element)
{
    return converted<std::vector<ObjectReference>>(
        ofEveryElement(call<std::vector<RawReference>>(element, accessibleInterface, "GetChildren")), references);
}

PendingAnswer<ObjectReference> Tree::parent(const ObjectReference& element)
{
    auto parent = converted<ObjectReference>(property<RawReference>(element, accessibleInterface, "Parent"), reference);
    return then<ObjectReference>(std::move(parent), [](Answer<ObjectReference> answer) {
        if (answer.succeeded() && answer.value.path.empty())
            answer.error = AccessibilityError::noValue;
        return answer;
    });
}

PendingAnswer<std::vector<ObjectReference>> Tree::labels(const ObjectReference& element)
{
    auto relations = call<std::vector<RawRelation>>(element, accessibleInterface, "GetRelationSet");
    return converted<std::vector<ObjectReference>>(std::move(relations), [](const auto& all) {
        std::vector<ObjectReference> labels;
        for (const auto& relation : all)
            if (relation.template get<0>() == labelledBy)
                labels = references(relation.template get<1>());
        return labels;
    });
}

PendingAnswer<std::string> Tree::name(const ObjectReference& element)
{
    return property<std::string>(element, accessibleInterface, "Name");
}

PendingAnswer<std::string> Tree::description(const ObjectReference& element)
{
    return property<std::string>(element, accessibleInterface, "Description");
}

PendingAnswer<std::string> Tree::identifier(const ObjectReference& element)
{
    return property<std::string>(element, accessibleInterface, "AccessibleId");
}

PendingAnswer<std::int32_t> Tree::caretOffset(const ObjectReference& element)
{
    return property<std::int32_t>(element, textInterface, "CaretOffset");
}

PendingAnswer<bool> Tree::grabFocus(const ObjectReference& element)
{
    return call<bool>(element, componentInterface, "GrabFocus");
}

PendingAnswer<std::uint32_t> Tree::process(const std::string& program)
{
    const ObjectReference bus { "org.freedesktop.DBus", "/org/freedesktop/DBus" };
    return call<std::uint32_t>(bus, "org.freedesktop.DBus", "GetConnectionUnixProcessID", program);
}

} // namespace DesktopLinux
