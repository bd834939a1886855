// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace Sorvane {

// A spoken number in a text that may begin an item of a list. Offsets are bytes.
struct Marker {
    int number = 0; // 1 to 10
    size_t start = 0; // of the number, or of the "and" or "number" before it
    size_t contentStart = 0; // where the item's words begin
    bool isExplicit = false; // "number two", "2." or "2)"; neither "two" nor "2"
};

// The numbers of the text, in order, that words follow.
std::vector<Marker> spokenNumbers(std::string_view text);

// Whether a line of a list begins, after its mark, with the number of its place (0 is the first), as in "Two call mom".
bool beginsWithNumber(std::string_view line, size_t place);

} // namespace Sorvane
