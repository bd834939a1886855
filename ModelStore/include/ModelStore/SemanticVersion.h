// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ModelStore {

// A version without any label. They are ordered by their numbers, from left to right.
struct SemanticVersion {
    int64_t major = 0;
    int64_t minor = 0;
    int64_t patch = 0;

    auto operator<=>(const SemanticVersion&) const = default;

    // Of one to three numbers, perhaps after a "v": "v2" is 2.0.0 and "1.4" is 1.4.0. Nothing for any other tag.
    static std::optional<SemanticVersion> parse(std::string_view tag);
};

} // namespace ModelStore
