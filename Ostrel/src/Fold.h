// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string>
#include <string_view>

namespace Ostrel {

// The part of a word by which it is recognized again: case folded without regard to language, and of that only
// letters, marks, numbers and the apostrophe. Diacritics are kept.
//
// Example: "Don't!" gives "don't".
std::string fold(std::string_view text);

// True if the text's first character is a lower-case letter.
bool beginsLowerCase(std::string_view text);

} // namespace Ostrel
