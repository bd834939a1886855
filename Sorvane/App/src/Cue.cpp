// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Cue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace Sorvane {

namespace {

constexpr size_t lineLength = 42; // characters
constexpr double longestCue = 7.0; // seconds
constexpr double pauseBetweenCues = 1.0; // seconds

// Characters, not bytes: continuation bytes of UTF-8 do not count.
size_t characterCount(std::string_view text)
{
    return static_cast<size_t>(
        std::ranges::count_if(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u; }));
}

bool endsSentence(std::string_view text)
{
    return !text.empty() && std::string_view(".!?").find(text.back()) != std::string_view::npos;
}

bool startsCue(const Cue& cue, const Ostrel::Word& next)
{
    return endsSentence(cue.text) || next.start - cue.end >= pauseBetweenCues || next.end - cue.start > longestCue
        || characterCount(cue.text) + 1 + characterCount(next.text) > 2 * lineLength;
}

} // namespace

std::vector<Cue> cues(std::span<const Ostrel::Word> words)
{
    std::vector<Cue> all;
    for (const auto& word : words) {
        if (all.empty() || startsCue(all.back(), word)) {
            all.push_back({ word.start, word.end, word.text });
        } else {
            all.back().text += " " + word.text;
            all.back().end = word.end;
        }
    }
    return all;
}

std::string wrapped(std::string_view text)
{
    std::string lines(text);
    if (characterCount(text) <= lineLength)
        return lines;
    const auto fromMiddle = [&](size_t position) {
        return std::abs(static_cast<std::ptrdiff_t>(position) - static_cast<std::ptrdiff_t>(text.size() / 2));
    };
    size_t best = std::string::npos;
    for (size_t blank = lines.find(' '); blank != std::string::npos; blank = lines.find(' ', blank + 1))
        if (best == std::string::npos || fromMiddle(blank) < fromMiddle(best))
            best = blank;
    if (best != std::string::npos)
        lines[best] = '\n';
    return lines;
}

std::string timestamp(double seconds, char decimalMark)
{
    const auto milliseconds = std::llround(std::max(seconds, 0.0) * 1000);
    std::array<char, 48> text {};
    std::snprintf(text.data(), text.size(), "%02lld:%02lld:%02lld%c%03lld", milliseconds / 3'600'000,
        milliseconds / 60'000 % 60, milliseconds / 1000 % 60, decimalMark, milliseconds % 1000);
    return text.data();
}

} // namespace Sorvane
