// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace ModelStore {

// Puts one "/" between the parts that are not empty, unless it is there already. A part's own leading "/" is not
// looked at. Example: "a/", "", "b" gives "a/b".
std::string join(std::initializer_list<std::string_view> parts);

// True for a path that stays below where it is put: not empty, not absolute, no piece empty, "." or "..", and none
// of the characters that separate the manifest's fields. A directory may end in one "/".
bool isSafeRelativePath(std::string_view path);

} // namespace ModelStore
