// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string_view>

namespace PlatformSupport {

// Equal but for the case of the letters A to Z. All other bytes must be the same, so "Ä" is not "ä".
bool asciiCaseEqual(std::string_view a, std::string_view b) noexcept;

} // namespace PlatformSupport
