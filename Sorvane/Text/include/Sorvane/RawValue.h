// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <algorithm>
#include <optional>
#include <ranges>
#include <string_view>

namespace Sorvane {

// The case among `all` whose raw value is exactly the text.
template <typename Cases>
std::optional<std::ranges::range_value_t<Cases>> caseWithRawValue(const Cases& all, std::string_view text)
{
    const auto found = std::ranges::find_if(all, [text](auto value) { return rawValue(value) == text; });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

} // namespace Sorvane
