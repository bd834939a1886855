// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// The words of a text in lower case without punctuation, as recognition is judged by.
std::vector<std::string> spokenWords(const std::string& text);

// Substitutions, insertions and deletions that turn `heard` into `said`: the Levenshtein distance over words.
size_t wordErrors(const std::vector<std::string>& said, const std::vector<std::string>& heard);
