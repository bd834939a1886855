// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// Letters and their case, by Unicode's rules and no language's own. What is no UTF-8 counts as U+FFFD, and becomes it
// where a new text is made.
namespace Regex {

// A code point of a script's letters, or a mark that stands on one: "é" is a letter in either spelling.
bool isLetter(char32_t codePoint);
bool isLetterOrNumber(char32_t codePoint);

// Whether some code point of the text is one.
bool containsLetterOrNumber(std::string_view text);

std::string lowercased(std::string_view text);

// With the first character, as a reader counts, in upper case ("ß" becomes "SS") or in lower case, and the rest as it
// was.
std::string firstUppercased(std::string_view text);
std::string firstLowercased(std::string_view text);

// Equal if case is ignored. "é" as one code point and as two are different.
bool equalIgnoringCase(std::string_view a, std::string_view b);

// The length in bytes of the beginning of the text that equals `prefix` if case is ignored.
std::optional<size_t> prefixLengthIgnoringCase(std::string_view text, std::string_view prefix);

// Characters as a reader counts them: a letter with its marks, or a flag, is one.
size_t characterCount(std::string_view text);

} // namespace Regex
