// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace Regex {

// A stretch of a UTF-8 text, in bytes from its start; it begins and ends between characters.
struct ByteRange {
    size_t start = 0;
    size_t end = 0; // behind the last byte

    bool operator==(const ByteRange&) const = default;
};

// A stretch of a text, in UTF-16 code units from its start.
struct UTF16Range {
    size_t start = 0;
    size_t end = 0; // behind the last unit

    bool operator==(const UTF16Range&) const = default;
};

// What a pattern found. Element 0 of `captures` is the whole match, the others are the groups in order; of a group
// that did not take part both fields are absent. Substrings point into the text that was searched and are valid as
// long as it is.
template <typename Range> struct BasicMatch {
    struct Capture {
        std::optional<Range> range;
        std::optional<std::string_view> substring;

        bool operator==(const Capture&) const = default;
    };

    std::vector<Capture> captures;

    Range range() const { return captures.at(0).range.value(); }
    std::string_view substring() const { return captures.at(0).substring.value(); }

    bool operator==(const BasicMatch&) const = default;
};

using UTF16Match = BasicMatch<UTF16Range>;

struct Match : BasicMatch<ByteRange> {
    // The same match in UTF-16 offsets. `text` is the text that was searched.
    UTF16Match utf16Offsets(std::string_view text) const;
};

} // namespace Regex
