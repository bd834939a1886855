// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <array>
#include <string_view>

namespace Sorvane {

// The numbers that a spoken list can have: the first word is 1.
inline constexpr std::array<std::string_view, 10> numberWords { "one", "two", "three", "four", "five", "six", "seven",
    "eight", "nine", "ten" };

} // namespace Sorvane
