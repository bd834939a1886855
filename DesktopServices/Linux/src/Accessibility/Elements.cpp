// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/Elements.h"

#include "Accessibility/Roles.h"

#include <DesktopServices/AccessibilityNames.h>

#include <algorithm>
#include <utility>

namespace DesktopLinux {

namespace AccessibilityAttribute = DesktopServices::AccessibilityAttribute;
namespace AccessibilityRole = DesktopServices::AccessibilityRole;
using DesktopServices::AccessibilityElement;
using DesktopServices::AccessibilityError;
using DesktopServices::AccessibilityProcess;
using DesktopServices::AccessibilityRange;
using DesktopServices::AccessibilityReading;
using DesktopServices::AccessibilityTimeout;
using DesktopServices::AccessibilityURL;
using DesktopServices::ProcessIdentifier;

namespace {

// Deeper than any window's contents; a program that names an element its own ancestor is not followed for ever.
constexpr int deepestElement = 200;

constexpr auto longestTimeout = std::chrono::seconds(10);

constexpr std::string_view textInterface = "org.a11y.atspi.Text";
constexpr std::string_view documentInterface = "org.a11y.atspi.Document";

// Text that is empty counts as none.
AccessibilityReading textReading(const Answer<std::string>& answer)
{
    if (!answer.succeeded())
        return { answer.error };
    if (answer.value.empty())
        return { AccessibilityError::noValue };
    return { AccessibilityError::success, answer.value };
}

std::string valueOf(const std::map<std::string, std::string>& attributes, const char* name)
{
    const auto found = attributes.find(name);
    return found == attributes.end() ? std::string() : found->second;
}

} // namespace

Deadline deadlineAfter(AccessibilityTimeout timeout)
{
    return std::chrono::steady_clock::now()
        + std::clamp<AccessibilityTimeout>(timeout, AccessibilityTimeout::zero(), longestTimeout);
}

Elements::Elements(std::unique_ptr<BusConnection> bus, std::function<bool()> isShortcutHeld)
    : bus_(std::move(bus))
    , isShortcutHeld_(std::move(isShortcutHeld))
{
}

AccessibilityReading Elements::read(const ObjectReference& element, std::string_view attribute, Deadline deadline)
{
    if (attribute == AccessibilityAttribute::role)
        return roleReading(element, deadline);
    if (attribute == AccessibilityAttribute::subrole)
        return subroleReading(element, deadline);
    if (attribute == AccessibilityAttribute::title)
        return titleReading(element, deadline);
    if (attribute == AccessibilityAttribute::description)
        return textReading(tree_.description(element).by(deadline));
    if (attribute == AccessibilityAttribute::identifier)
        return identifierReading(element, deadline);
    if (attribute == AccessibilityAttribute::parent)
        return elementReading(tree_.parent(element).by(deadline));
    if (attribute == AccessibilityAttribute::window)
        return elementReading(window(element, deadline));
    if (attribute == AccessibilityAttribute::enabled) // some toolkits never say "enabled"
        return stateReading(element, ElementState::sensitive, deadline);
    if (attribute == AccessibilityAttribute::focused)
        return stateReading(element, ElementState::focused, deadline);
    if (attribute == AccessibilityAttribute::selectedTextRange)
        return rangeReading(element, deadline);
    if (attribute == AccessibilityAttribute::url)
        return urlReading(element, deadline);
    return { AccessibilityError::attributeUnsupported };
}

AccessibilityReading Elements::roleReading(const ObjectReference& element, Deadline deadline)
{
    const auto askedStates = tree_.states(element);
    const auto role = tree_.role(element).by(deadline);
    if (!role.succeeded() || isInvalid(role.value))
        return { role.succeeded() ? AccessibilityError::invalidElement : role.error };
    const auto states = askedStates.by(deadline);
    if (!states.succeeded())
        return { states.error };
    if (isWindow(element, role.value, deadline))
        return { AccessibilityError::success, std::string(AccessibilityRole::window) };
    return { AccessibilityError::success, std::string(roleName(role.value, states.value)) };
}

AccessibilityReading Elements::subroleReading(const ObjectReference& element, Deadline deadline)
{
    const auto role = tree_.role(element).by(deadline);
    if (!role.succeeded())
        return { role.error };
    if (!isSecure(role.value))
        return { isInvalid(role.value) ? AccessibilityError::invalidElement : AccessibilityError::noValue };
    return { AccessibilityError::success, std::string(AccessibilityRole::secureTextField) };
}

AccessibilityReading Elements::stateReading(const ObjectReference& element, ElementState state, Deadline deadline)
{
    const auto states = tree_.states(element).by(deadline);
    if (!states.succeeded())
        return { states.error };
    return { AccessibilityError::success, states.value.has(state) };
}

// What an element is asked in an interface that it does not have may end its program.
Answer<bool> Elements::hasInterface(const ObjectReference& element, std::string_view interface, Deadline deadline)
{
    const auto interfaces = tree_.interfaces(element).by(deadline);
    return { interfaces.error, std::ranges::find(interfaces.value, interface) != interfaces.value.end() };
}

AccessibilityReading Elements::rangeReading(const ObjectReference& element, Deadline deadline)
{
    const auto askedStates = tree_.states(element);
    const auto hasText = hasInterface(element, textInterface, deadline);
    const auto states = askedStates.by(deadline);
    if (!hasText.succeeded() || !states.succeeded())
        return { hasText.succeeded() ? states.error : hasText.error };
    if (!takesText(states.value) || !hasText.value)
        return { AccessibilityError::attributeUnsupported };
    const auto caret = tree_.caretOffset(element).by(deadline);
    if (!caret.succeeded())
        return { caret.error };
    return { AccessibilityError::success, AccessibilityRange { caret.value, 0 } };
}

// Some toolkits leave it to the label beside a field to name it.
AccessibilityReading Elements::titleReading(const ObjectReference& element, Deadline deadline)
{
    auto title = textReading(tree_.name(element).by(deadline));
    if (title.error != AccessibilityError::noValue)
        return title;
    for (const auto& label : tree_.labels(element).by(deadline).value)
        if (auto named = textReading(tree_.name(label).by(deadline)); named.succeeded())
            return named;
    return title;
}

// Pages give their elements identifiers in another way than toolkits.
AccessibilityReading Elements::identifierReading(const ObjectReference& element, Deadline deadline)
{
    auto identifier = textReading(tree_.identifier(element).by(deadline));
    if (identifier.succeeded() || identifier.error == AccessibilityError::cannotComplete
        || identifier.error == AccessibilityError::invalidElement)
        return identifier;
    const auto attributes = tree_.attributes(element).by(deadline);
    return textReading({ attributes.error, valueOf(attributes.value, "id") });
}

AccessibilityReading Elements::urlReading(const ObjectReference& element, Deadline deadline)
{
    const auto isDocument = hasInterface(element, documentInterface, deadline);
    if (!isDocument.value)
        return { isDocument.succeeded() ? AccessibilityError::attributeUnsupported : isDocument.error };
    const auto attributes = tree_.documentAttributes(element).by(deadline);
    if (!attributes.succeeded())
        return { attributes.error };
    const auto location = valueOf(attributes.value, "URI");
    if (location.empty())
        return { AccessibilityError::noValue };
    return { AccessibilityError::success, AccessibilityURL { location } };
}

AccessibilityReading Elements::elementReading(const Answer<ObjectReference>& answer)
{
    if (!answer.succeeded())
        return { answer.error };
    return { AccessibilityError::success,
        AccessibilityElement(std::make_shared<AtspiElement>(reference(), answer.value)) };
}

bool Elements::isWindow(const ObjectReference& element, std::uint32_t role, Deadline deadline)
{
    if (!mayBeWindow(role))
        return DesktopLinux::isWindow(role);
    const auto parent = tree_.parent(element).by(deadline);
    const auto above = parent.succeeded() ? tree_.role(parent.value).by(deadline) : Answer<std::uint32_t>();
    return above.succeeded() && isApplication(above.value);
}

Answer<ObjectReference> Elements::window(const ObjectReference& element, Deadline deadline)
{
    Answer<ObjectReference> ancestor { AccessibilityError::success, element };
    for (int depth = 0; depth < deepestElement && ancestor.succeeded(); ++depth) {
        const auto askedParent = tree_.parent(ancestor.value);
        const auto role = tree_.role(ancestor.value).by(deadline);
        if (!role.succeeded())
            return { role.error };
        if (isWindow(ancestor.value, role.value, deadline))
            return ancestor;
        ancestor = askedParent.by(deadline);
    }
    return { ancestor.succeeded() ? AccessibilityError::noValue : ancestor.error };
}

AccessibilityError Elements::focus(const ObjectReference& element, Deadline deadline)
{
    const auto isTaken = tree_.grabFocus(element).by(deadline);
    if (!isTaken.succeeded())
        return isTaken.error;
    return isTaken.value ? AccessibilityError::success : AccessibilityError::failure;
}

AccessibilityProcess Elements::process(const ObjectReference& element, Deadline deadline)
{
    const auto process = tree_.process(element.program).by(deadline);
    if (!process.succeeded())
        return { process.error };
    return { AccessibilityError::success, static_cast<ProcessIdentifier>(process.value) };
}

AccessibilityReading Elements::focusedElement(ProcessIdentifier process, Deadline deadline)
{
    return elementReading(focused(process, deadline));
}

AccessibilityReading Elements::focusedWindow(ProcessIdentifier process, Deadline deadline)
{
    const auto element = focused(process, deadline);
    return element.succeeded() ? elementReading(window(element.value, deadline))
                               : AccessibilityReading { element.error };
}

// What was told last may be of a part of the program that nobody sees; then it is looked for.
Answer<ObjectReference> Elements::focused(ProcessIdentifier process, Deadline deadline)
{
    const auto last = focus_.lastFocused(process, deadline);
    if (last && hasFocus(*last, deadline))
        return { AccessibilityError::success, *last };
    if (const auto found = focus_.find(process, deadline))
        return { AccessibilityError::success, *found };
    if (last && isShortcutHeld_())
        return { AccessibilityError::success, *last };
    return { std::chrono::steady_clock::now() < deadline ? AccessibilityError::noValue
                                                         : AccessibilityError::cannotComplete };
}

// Some programs leave the state on an element that is not seen, or whose window is behind another.
bool Elements::hasFocus(const ObjectReference& element, Deadline deadline)
{
    const auto states = tree_.states(element).by(deadline);
    if (!states.succeeded() || !states.value.has(ElementState::focused) || !states.value.has(ElementState::visible))
        return false;
    const auto around = window(element, deadline);
    const auto statesAround
        = around.succeeded() ? tree_.states(around.value).by(deadline) : Answer<ElementStates> { around.error };
    return statesAround.succeeded() && statesAround.value.has(ElementState::active);
}

AtspiElement::AtspiElement(PlatformSupport::WeakReference<Elements> elements, ObjectReference reference)
    : elements_(std::move(elements))
    , reference_(std::move(reference))
{
}

AccessibilityReading AtspiElement::read(std::string_view attribute, AccessibilityTimeout timeout) const
{
    auto* const elements = elements_.get();
    return elements ? elements->read(reference_, attribute, deadlineAfter(timeout))
                    : AccessibilityReading { AccessibilityError::invalidElement };
}

AccessibilityError AtspiElement::write(std::string_view attribute, bool value, AccessibilityTimeout timeout)
{
    auto* const elements = elements_.get();
    if (!elements)
        return AccessibilityError::invalidElement;
    if (attribute != AccessibilityAttribute::focused || !value)
        return AccessibilityError::attributeUnsupported;
    return elements->focus(reference_, deadlineAfter(timeout));
}

// Windows come to the front with their program, which the window manager does.
AccessibilityError AtspiElement::perform(std::string_view, AccessibilityTimeout)
{
    return elements_.get() ? AccessibilityError::actionUnsupported : AccessibilityError::invalidElement;
}

AccessibilityProcess AtspiElement::process(AccessibilityTimeout timeout) const
{
    auto* const elements = elements_.get();
    return elements ? elements->process(reference_, deadlineAfter(timeout))
                    : AccessibilityProcess { AccessibilityError::invalidElement };
}

bool AtspiElement::means(const DesktopServices::AccessibilityObject& other) const
{
    const auto* const element = dynamic_cast<const AtspiElement*>(&other);
    return element && element->reference_ == reference_;
}

} // namespace DesktopLinux
