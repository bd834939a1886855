// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace Scenarios {

// One line of a story: a verb in capitals, then words, numbers and texts in quotes.
//
//     EXPECT field "Notes" "Good morning."
struct Step {
    size_t line = 0; // from 1
    std::string words; // the verb and the words, "EXPECT field"
    std::vector<std::string> arguments; // the texts and the numbers, in order

    const std::string& text(size_t place) const;
    double number(size_t place) const;
};

// A file of steps; lines that begin with "#" say what it is about.
//
// Errors: std::runtime_error, a line that cannot be read
std::vector<Step> readStory(const std::filesystem::path& path);

} // namespace Scenarios
