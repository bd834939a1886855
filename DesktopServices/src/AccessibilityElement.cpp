// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopServices/AccessibilityElement.h>
#include <PlatformSupport/Precondition.h>

#include <utility>

namespace DesktopServices {

AccessibilityElement::AccessibilityElement(std::shared_ptr<AccessibilityObject> object)
    : object_(std::move(object))
{
    PlatformSupport::precondition(object_ != nullptr, "a handle to no element");
}

AccessibilityReading AccessibilityElement::read(std::string_view attribute, AccessibilityTimeout timeout) const
{
    return object_->read(attribute, timeout);
}

AccessibilityError AccessibilityElement::write(
    std::string_view attribute, bool value, AccessibilityTimeout timeout) const
{
    return object_->write(attribute, value, timeout);
}

AccessibilityError AccessibilityElement::perform(std::string_view action, AccessibilityTimeout timeout) const
{
    return object_->perform(action, timeout);
}

AccessibilityProcess AccessibilityElement::process(AccessibilityTimeout timeout) const
{
    return object_->process(timeout);
}

bool AccessibilityElement::operator==(const AccessibilityElement& other) const
{
    return object_ == other.object_ || object_->means(*other.object_);
}

} // namespace DesktopServices
