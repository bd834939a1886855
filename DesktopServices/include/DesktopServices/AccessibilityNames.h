// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string_view>

// The words by which elements are asked. Every desktop is translated into them.
namespace DesktopServices::AccessibilityAttribute {

// Of every element
inline constexpr std::string_view role = "AXRole";
inline constexpr std::string_view subrole = "AXSubrole";
inline constexpr std::string_view parent = "AXParent";
inline constexpr std::string_view window = "AXWindow"; // the window around the element
inline constexpr std::string_view title = "AXTitle";
inline constexpr std::string_view description = "AXDescription";
inline constexpr std::string_view identifier = "AXIdentifier"; // given by the program's author, not shown
inline constexpr std::string_view enabled = "AXEnabled";
inline constexpr std::string_view focused = "AXFocused"; // can be written
inline constexpr std::string_view selectedTextRange = "AXSelectedTextRange"; // only where text can be entered
inline constexpr std::string_view url = "AXURL"; // of a web area

// Of a window; both can be written
inline constexpr std::string_view minimized = "AXMinimized";
inline constexpr std::string_view main = "AXMain";

// Of an application
inline constexpr std::string_view focusedElement = "AXFocusedUIElement";
inline constexpr std::string_view focusedWindow = "AXFocusedWindow";
inline constexpr std::string_view manualAccessibility = "AXManualAccessibility"; // can be written

} // namespace DesktopServices::AccessibilityAttribute

namespace DesktopServices::AccessibilityRole {

inline constexpr std::string_view application = "AXApplication";
inline constexpr std::string_view window = "AXWindow";
inline constexpr std::string_view webArea = "AXWebArea"; // a web page, or a frame of one
inline constexpr std::string_view textField = "AXTextField"; // one line
inline constexpr std::string_view textArea = "AXTextArea"; // many lines, documents and terminals
inline constexpr std::string_view comboBox = "AXComboBox"; // one that can be typed into
inline constexpr std::string_view secureTextField = "AXSecureTextField"; // the subrole of a password field

} // namespace DesktopServices::AccessibilityRole

namespace DesktopServices::AccessibilityAction {

inline constexpr std::string_view raise = "AXRaise"; // brings a window before the others of its program

} // namespace DesktopServices::AccessibilityAction
