// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeElement.h>
#include <DesktopFakes/FakeWorkspace.h>
#include <DesktopServices/AccessibilityNames.h>
#include <PlatformSupport/Precondition.h>

#include <algorithm>
#include <array>
#include <utility>

namespace DesktopFakes {

namespace AccessibilityAction = DesktopServices::AccessibilityAction;
namespace AccessibilityAttribute = DesktopServices::AccessibilityAttribute;
namespace AccessibilityRole = DesktopServices::AccessibilityRole;
using DesktopServices::AccessibilityElement;
using DesktopServices::AccessibilityError;
using DesktopServices::AccessibilityProcess;
using DesktopServices::AccessibilityRange;
using DesktopServices::AccessibilityReading;
using DesktopServices::AccessibilityTimeout;
using DesktopServices::AccessibilityURL;
using DesktopServices::AccessibilityValue;

namespace {

AccessibilityReading failure(AccessibilityError error)
{
    return { .error = error };
}

AccessibilityReading success(AccessibilityValue value)
{
    return { .value = std::move(value) };
}

AccessibilityReading elementOrNone(FakeElement* element)
{
    return element ? success(element->handle()) : failure(AccessibilityError::noValue);
}

AccessibilityReading textOrNone(const std::string& text)
{
    return text.empty() ? failure(AccessibilityError::noValue) : success(text);
}

} // namespace

FakeElement::FakeElement(FakeApplication& application, FakeElement* parent, FakeElementLook look)
    : application_(application)
    , parent_(parent)
    , look_(std::move(look))
{
}

FakeElement::~FakeElement() = default;

FakeElement& FakeElement::add(const FakeElementLook& look)
{
    children_.push_back(std::make_shared<FakeElement>(application_, this, look));
    return *children_.back();
}

FakeElement& FakeElement::addTextField(const std::string& title)
{
    return add({ .role = std::string(AccessibilityRole::textField), .title = title });
}

FakeElement& FakeElement::addTextArea(const std::string& title)
{
    return add({ .role = std::string(AccessibilityRole::textArea), .title = title });
}

FakeElement& FakeElement::addPasswordField(const std::string& title)
{
    return add({ .role = std::string(AccessibilityRole::textField),
        .subrole = std::string(AccessibilityRole::secureTextField),
        .title = title });
}

FakeElement& FakeElement::addWebArea(const std::string& url)
{
    return add({ .role = std::string(AccessibilityRole::webArea), .url = url });
}

FakeElement& FakeElement::addGroup(const std::string& title)
{
    return add({ .role = "AXGroup", .title = title });
}

void FakeElement::focus()
{
    application_.focus(this, window());
}

void FakeElement::moveInto(FakeElement& parent)
{
    PlatformSupport::precondition(
        parent_ && &parent.application_ == &application_, "an element stays in its application, which itself stays");
    auto& siblings = parent_->children_;
    const auto self = shared_from_this();
    siblings.erase(std::find(siblings.begin(), siblings.end(), self));
    parent.children_.push_back(self);
    parent_ = &parent;
}

void FakeElement::remove()
{
    isRemoved_ = true;
    application_.forget(*this);
    for (const auto& child : children_)
        child->remove();
}

void FakeElement::type(std::string_view text)
{
    text_.replace(selectionStart_, selectionLength_, text);
    selectionStart_ += text.size();
    selectionLength_ = 0;
}

void FakeElement::select(std::string_view part)
{
    const size_t start = text_.find(part);
    PlatformSupport::precondition(start != std::string::npos, "what is selected stands in the text");
    selectionStart_ = start;
    selectionLength_ = part.size();
}

bool FakeElement::isFocused() const
{
    return application_.focusedElement() == this;
}

bool FakeElement::acceptsText() const
{
    constexpr std::array roles { AccessibilityRole::textField, AccessibilityRole::textArea,
        AccessibilityRole::comboBox };
    return isEnabled_ && std::find(roles.begin(), roles.end(), look_.role) != roles.end();
}

bool FakeElement::isWindow() const
{
    return look_.role == AccessibilityRole::window;
}

FakeElement* FakeElement::window() const
{
    return isWindow() || !parent_ ? nullptr : parent_->isWindow() ? parent_ : parent_->window();
}

void FakeElement::answer(std::string_view attribute, const AccessibilityValue& value)
{
    scripted_[std::string(attribute)] = [value] { return success(value); };
}

void FakeElement::answer(std::string_view attribute, FakeElement& element)
{
    scripted_[std::string(attribute)] = [held = element.weak_from_this()] { return elementOrNone(held.lock().get()); };
}

void FakeElement::fail(std::string_view attribute, AccessibilityError error)
{
    scripted_[std::string(attribute)] = [error] { return failure(error); };
}

void FakeElement::answerAfter(std::string_view attribute, Duration duration)
{
    delays_[std::string(attribute)] = duration;
}

AccessibilityElement FakeElement::handle()
{
    return AccessibilityElement(shared_from_this());
}

AccessibilityReading FakeElement::read(std::string_view attribute, AccessibilityTimeout timeout) const
{
    application_.workspace_.accessibility().calls.push_back({ "read " + std::string(attribute), look_.title, timeout });
    const AccessibilityError error = reach(attribute, timeout);
    const auto reading = error == AccessibilityError::success ? answerOf(attribute) : failure(error);
    if (const auto action = std::exchange(onNextRead_, nullptr))
        action();
    return reading;
}

AccessibilityError FakeElement::write(std::string_view attribute, bool value, AccessibilityTimeout timeout)
{
    application_.workspace_.accessibility().calls.push_back(
        { "write " + std::string(attribute) + (value ? " true" : " false"), look_.title, timeout });
    const AccessibilityError error = reach(attribute, timeout);
    if (error == AccessibilityError::success)
        accept(attribute, value);
    return error;
}

AccessibilityError FakeElement::perform(std::string_view action, AccessibilityTimeout timeout)
{
    application_.workspace_.accessibility().calls.push_back({ "perform " + std::string(action), look_.title, timeout });
    const AccessibilityError error = reach(action, timeout);
    if (error == AccessibilityError::success && !(isWindow() && action == AccessibilityAction::raise))
        return AccessibilityError::actionUnsupported;
    return error;
}

// Who owns an element is known without asking the program, so that a frozen one does not matter.
AccessibilityProcess FakeElement::process(AccessibilityTimeout timeout) const
{
    application_.workspace_.accessibility().calls.push_back({ "process", look_.title, timeout });
    if (process_)
        return *process_;
    if (application_.isTerminated())
        return { .error = AccessibilityError::invalidElement };
    return { .identifier = application_.processIdentifier() };
}

bool FakeElement::isGone() const
{
    return isRemoved_ || application_.isTerminated();
}

AccessibilityError FakeElement::reach(std::string_view attribute, AccessibilityTimeout timeout) const
{
    if (isGone())
        return AccessibilityError::invalidElement;
    const auto delay = delays_.find(attribute);
    const Duration needed = delay == delays_.end() ? Duration::zero() : delay->second;
    const bool isInTime = !application_.isFrozen_ && needed < timeout;
    application_.workspace_.time().passBlocked(isInTime ? needed : timeout);
    return isInTime ? AccessibilityError::success : AccessibilityError::cannotComplete;
}

AccessibilityReading FakeElement::answerOf(std::string_view attribute) const
{
    const auto scripted = scripted_.find(attribute);
    return scripted == scripted_.end() ? answerOfItsOwn(attribute) : scripted->second();
}

AccessibilityReading FakeElement::answerOfItsOwn(std::string_view attribute) const
{
    namespace Attribute = AccessibilityAttribute;
    if (attribute == Attribute::focusedElement && !parent_)
        return elementOrNone(application_.focused_);
    if (attribute == Attribute::focusedWindow && !parent_)
        return elementOrNone(application_.focusedWindow_);
    if (attribute == Attribute::parent)
        return elementOrNone(parent_);
    if (attribute == Attribute::window)
        return elementOrNone(window());
    if (attribute == Attribute::enabled)
        return success(isEnabled_);
    if (attribute == Attribute::focused)
        return success(isFocused());
    if (attribute == Attribute::selectedTextRange && acceptsText())
        return success(AccessibilityRange {
            static_cast<std::int64_t>(selectionStart_), static_cast<std::int64_t>(selectionLength_) });
    if (const auto written = written_.find(attribute); written != written_.end())
        return success(written->second);
    return look(attribute);
}

AccessibilityReading FakeElement::look(std::string_view attribute) const
{
    namespace Attribute = AccessibilityAttribute;
    if (attribute == Attribute::role)
        return textOrNone(look_.role);
    if (attribute == Attribute::subrole)
        return textOrNone(look_.subrole);
    if (attribute == Attribute::title)
        return textOrNone(look_.title);
    if (attribute == Attribute::description)
        return textOrNone(look_.description);
    if (attribute == Attribute::identifier)
        return textOrNone(look_.identifier);
    if (attribute == Attribute::url && !look_.url.empty())
        return success(AccessibilityURL { look_.url });
    return failure(AccessibilityError::attributeUnsupported);
}

void FakeElement::accept(std::string_view attribute, bool value)
{
    if (attribute == AccessibilityAttribute::focused && value && canBeFocused())
        focus();
    else if (attribute == AccessibilityAttribute::main && value && isWindow())
        application_.focusWindow(*this);
    if (attribute != AccessibilityAttribute::focused)
        written_[std::string(attribute)] = value;
}

} // namespace DesktopFakes
