// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Regex/Match.h>

#include <unicode/unistr.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Regex {

// A UTF-8 text as ICU takes it, with the way back from UTF-16 offsets to bytes. What is no UTF-8 is U+FFFD. The text
// must outlive it.
class UTF16Text {
public:
    explicit UTF16Text(std::string_view text);

    const icu::UnicodeString& units() const { return units_; }

    ByteRange byteRange(UTF16Range range) const;
    UTF16Range utf16Range(ByteRange range) const;
    std::string_view substring(ByteRange range) const;

private:
    size_t unitAt(size_t byte) const;

    std::string_view text_;
    icu::UnicodeString units_;
    std::vector<uint32_t> byteOffsets_; // [units + 1]; both halves of a pair have their character's
};

// The length in bytes, in the 32 bits that ICU counts with.
int32_t icuLength(std::string_view text);

icu::UnicodeString utf16(std::string_view text);
std::string utf8(const icu::UnicodeString& text);

} // namespace Regex
