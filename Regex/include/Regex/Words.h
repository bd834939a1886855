// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Regex/Match.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Regex {

// A word of a text: where it stands, and a view of it that is valid as long as the text is.
struct Word {
    ByteRange range;
    std::string_view text;
};

// The words of a text in order, cut by Unicode's rules for words and, for languages that write none apart, by
// dictionary. A word holds letters, digits, kana or ideographs; blanks, punctuation and symbols are none.
//
//   words("Don't wait: 3.5 km!")    Don't | wait | 3.5 | km
//
// `locale` names a language whose own habits count ("en"); without one the text is read as any language.
// Safe on any thread.
std::vector<Word> words(std::string_view text, const std::optional<std::string>& locale = std::nullopt);

} // namespace Regex
