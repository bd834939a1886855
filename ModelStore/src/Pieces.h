// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <string_view>
#include <vector>

namespace ModelStore {

// The pieces of a text between separators, empty ones kept: "a//b" at '/' gives "a", "", "b".
inline std::vector<std::string_view> piecesOf(std::string_view text, char separator)
{
    std::vector<std::string_view> pieces;
    for (size_t at = text.find(separator); at != std::string_view::npos; at = text.find(separator)) {
        pieces.push_back(text.substr(0, at));
        text.remove_prefix(at + 1);
    }
    pieces.push_back(text);
    return pieces;
}

} // namespace ModelStore
