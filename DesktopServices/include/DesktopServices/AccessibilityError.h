// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstdint>

namespace DesktopServices {

// How a call on the accessibility tree ended. The numbers go into the diagnostic log and are never changed.
enum class AccessibilityError : std::int32_t {
    success = 0,
    failure = -25200,
    illegalArgument = -25201,
    invalidElement = -25202, // the element, or its program, is gone
    cannotComplete = -25204, // no answer in time
    attributeUnsupported = -25205, // elements of this kind do not have the attribute
    actionUnsupported = -25206,
    notImplemented = -25208,
    apiDisabled = -25211, // this program is not trusted
    noValue = -25212 // the attribute is there, but has no value
};

// As the diagnostic log writes it.
constexpr std::int32_t code(AccessibilityError error)
{
    return static_cast<std::int32_t>(error);
}

} // namespace DesktopServices
