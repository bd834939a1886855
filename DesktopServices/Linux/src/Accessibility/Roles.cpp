// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Accessibility/Roles.h"

#include <DesktopServices/AccessibilityNames.h>

namespace DesktopLinux {

namespace AccessibilityRole = DesktopServices::AccessibilityRole;

namespace {

// By the numbers of the protocol.
enum Role : std::uint32_t {
    invalid = 0,
    alert = 2,
    colorChooser = 9,
    comboBox = 11,
    dialog = 16,
    fileChooser = 19,
    filler = 20,
    fontChooser = 22,
    frame = 23,
    passwordText = 40,
    spinButton = 52,
    terminal = 60,
    text = 61,
    window = 69,
    application = 75,
    autocomplete = 76,
    editbar = 77,
    entry = 79,
    documentText = 94,
    documentWeb = 95,
    documentEmail = 96,
};

constexpr std::string_view staticText = "AXStaticText";
constexpr std::string_view popUpButton = "AXPopUpButton";
constexpr std::string_view unknown = "AXUnknown";

} // namespace

bool takesText(const ElementStates& states)
{
    return states.has(ElementState::editable) && !states.has(ElementState::readOnly);
}

std::string_view roleName(std::uint32_t role, const ElementStates& states)
{
    switch (role) {
    case entry:
    case passwordText:
    case spinButton:
    case autocomplete:
    case editbar:
    case text:
        if (!takesText(states))
            return staticText;
        return states.has(ElementState::multiLine) ? AccessibilityRole::textArea : AccessibilityRole::textField;
    case documentText:
    case documentEmail:
        return takesText(states) ? AccessibilityRole::textArea : staticText;
    case terminal: // never says that it is editable
        return AccessibilityRole::textArea;
    case comboBox:
        return takesText(states) ? AccessibilityRole::comboBox : popUpButton;
    case documentWeb:
        return AccessibilityRole::webArea;
    case application:
        return AccessibilityRole::application;
    default:
        return isWindow(role) ? AccessibilityRole::window : unknown;
    }
}

bool isSecure(std::uint32_t role)
{
    return role == passwordText;
}

bool isInvalid(std::uint32_t role)
{
    return role == invalid;
}

bool mayBeWindow(std::uint32_t role)
{
    return role == filler;
}

bool isApplication(std::uint32_t role)
{
    return role == application;
}

bool isWebPage(std::uint32_t role)
{
    return role == documentWeb;
}

bool isWindow(std::uint32_t role)
{
    return role == frame || role == window || role == dialog || role == alert || role == fileChooser
        || role == fontChooser || role == colorChooser;
}

} // namespace DesktopLinux
