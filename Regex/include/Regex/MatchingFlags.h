// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>

namespace Regex {

// What the engine tells along with a match, or at the end of a search: a set of flags.
struct MatchingFlags {
    static const MatchingFlags completed; // the text was searched to its end
    static const MatchingFlags hitEnd; // the match looked at the text's end; more text could change it
    static const MatchingFlags requiredEnd; // more text could undo the match
    static const MatchingFlags internalError; // the search took too long or too much memory, and gave up

    size_t rawValue = 0;

    constexpr bool contains(MatchingFlags other) const { return (rawValue & other.rawValue) == other.rawValue; }
    constexpr MatchingFlags operator|(MatchingFlags other) const { return { rawValue | other.rawValue }; }
    bool operator==(const MatchingFlags&) const = default;
};

inline constexpr MatchingFlags MatchingFlags::completed { 1U << 1U };
inline constexpr MatchingFlags MatchingFlags::hitEnd { 1U << 2U };
inline constexpr MatchingFlags MatchingFlags::requiredEnd { 1U << 3U };
inline constexpr MatchingFlags MatchingFlags::internalError { 1U << 4U };

} // namespace Regex
