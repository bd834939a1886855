// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "WordErrors.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <sstream>

std::vector<std::string> spokenWords(const std::string& text)
{
    std::string plain;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        const bool keep = std::isalnum(byte) != 0 || character == '\'' || byte >= 0x80;
        plain += keep ? static_cast<char>(std::tolower(byte)) : ' ';
    }
    std::istringstream stream(plain);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

size_t wordErrors(const std::vector<std::string>& said, const std::vector<std::string>& heard)
{
    std::vector<size_t> row(heard.size() + 1);
    std::iota(row.begin(), row.end(), size_t { 0 });
    for (size_t i = 0; i < said.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < heard.size(); ++j) {
            const size_t substituted = diagonal + (said[i] == heard[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({ substituted, row[j] + 1, row[j + 1] + 1 });
        }
    }
    return row.back();
}
