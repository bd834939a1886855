// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopServices/AccessibilityNames.h>
#include <Sorvane/TextInsertion.h>

#include <string>

namespace Sorvane {

namespace AccessibilityAttribute = DesktopServices::AccessibilityAttribute;
namespace AccessibilityRole = DesktopServices::AccessibilityRole;
using DesktopServices::AccessibilityElement;
using DesktopServices::AccessibilityError;
using namespace std::chrono_literals;

namespace {

// A proof stands between the text and its field, and again before the key: one that is slow to answer is no field.
constexpr auto proofTimeout = 150ms;

} // namespace

void TextInsertion::validateField(
    const std::optional<std::string>& role, const std::optional<std::string>& subrole, bool hasSelection)
{
    if (subrole == AccessibilityRole::secureTextField)
        throw InsertionError(InsertionError::Case::secureField);
    const bool isTextField = role == AccessibilityRole::textField || role == AccessibilityRole::textArea
        || role == AccessibilityRole::comboBox;
    if (!isTextField && !hasSelection)
        throw InsertionError(InsertionError::Case::noField);
}

void TextInsertion::validateDestination(const Target& target)
{
    if (!desktop_.permissions.isAccessibilityTrusted())
        throw InsertionError(InsertionError::Case::permission);
    validateApplication(target);
    validateElement(target);
    if (target.window)
        validateWindow(target);
}

void TextInsertion::validateApplication(const Target& target) const
{
    const auto& application = target.application;
    if (!application)
        throw unavailable("missing captured application");
    if (application->isTerminated())
        throw unavailable("captured application terminated");
    if (application->processIdentifier() != target.pid || application->bundleIdentifier() != target.bundleIdentifier)
        throw unavailable("captured application identity changed");
}

void TextInsertion::validateElement(const Target& target) const
{
    if (!target.element)
        throw unavailable("missing captured field");
    const AccessibilityElement& element = *target.element;
    const auto read = [&](std::string_view attribute) { return element.read(attribute, proofTimeout); };

    const auto owner = element.process(proofTimeout);
    if (owner.error != AccessibilityError::success || owner.identifier != target.pid)
        throw unavailable("field process identity", owner.error);

    const auto roleReading = read(AccessibilityAttribute::role);
    const auto role = roleReading.as<std::string>();
    if (!role)
        throw unavailable("field role", roleReading.error);

    const auto subrole = read(AccessibilityAttribute::subrole);
    const bool mayHaveNone
        = subrole.error == AccessibilityError::attributeUnsupported || subrole.error == AccessibilityError::noValue;
    if (!subrole.succeeded() && !mayHaveNone)
        throw unavailable("field subrole", subrole.error);

    validateField(role, subrole.as<std::string>(), read(AccessibilityAttribute::selectedTextRange).succeeded());
    if (read(AccessibilityAttribute::enabled).as<bool>() == false)
        throw unavailable("field disabled");
}

void TextInsertion::validateWindow(const Target& target) const
{
    const auto lookup = target.element->read(AccessibilityAttribute::window, proofTimeout);
    const auto window = lookup.as<AccessibilityElement>();
    if (!window)
        throw unavailable("field window lookup", lookup.error);
    if (window != target.window)
        throw unavailable("field window identity changed");

    const auto role = target.window->read(AccessibilityAttribute::role, proofTimeout);
    if (role.as<std::string>() != AccessibilityRole::window)
        throw unavailable("captured window role", role.error);
}

bool TextInsertion::isAppActive(const Target& target) const
{
    const auto application = desktop_.workspace.frontmostApplication();
    return application && application->processIdentifier() == target.pid;
}

bool TextInsertion::destinationIsFocused(const Target& target)
{
    if (!isAppActive(target) || !target.element)
        return false;
    const auto application = desktop_.accessibility.applicationElement(target.pid);
    const auto read = [&](std::string_view attribute) {
        return application.read(attribute, proofTimeout).as<AccessibilityElement>();
    };
    return read(AccessibilityAttribute::focusedElement) == target.element
        && (!target.window || read(AccessibilityAttribute::focusedWindow) == target.window);
}

InsertionError TextInsertion::unavailable(std::string_view reason, AccessibilityError error) const
{
    desktop_.diagnosticLog.error(insertionLog,
        "Original destination validation failed: " + std::string(reason) + ", AX code "
            + std::to_string(DesktopServices::code(error)));
    return InsertionError(InsertionError::Case::unavailableTarget);
}

} // namespace Sorvane
