// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string_view>
#include <vector>

// Views into the given text, valid as long as it is.
namespace Regex {

// Without Unicode's blanks, tabs and line breaks at both ends.
std::string_view trimmed(std::string_view text);

// Without the given ASCII characters at both ends; the second also takes blanks, tabs and line breaks.
std::string_view trimmedOf(std::string_view text, std::string_view characters);
std::string_view trimmedOfBlanksAnd(std::string_view text, std::string_view characters);

// The pieces between line breaks of any kind, empty ones too; CR LF are two line breaks.
std::vector<std::string_view> lines(std::string_view text);

// The pieces between blanks, tabs and line breaks; none is empty.
std::vector<std::string_view> piecesBetweenBlanks(std::string_view text);

// The longest pieces that are letters throughout; none is empty.
std::vector<std::string_view> runsOfLetters(std::string_view text);

} // namespace Regex
