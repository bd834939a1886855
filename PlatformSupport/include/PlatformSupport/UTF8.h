// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string>
#include <string_view>

namespace PlatformSupport {

// True for well-formed UTF-8: shortest forms only, no surrogates, nothing above U+10FFFF.
bool isUTF8(std::string_view text) noexcept;

// The text with everything that is not well-formed replaced by U+FFFD.
std::string repairedUTF8(std::string_view text);

} // namespace PlatformSupport
