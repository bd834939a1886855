// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TimedWords.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace Ostrel {

namespace {

constexpr std::string_view wordMark = "\u2581";

bool isControl(std::string_view piece)
{
    return piece.starts_with('<') && piece.ends_with('>');
}

void appendWithoutMarks(std::string& text, std::string_view piece)
{
    for (size_t mark = piece.find(wordMark); mark != std::string_view::npos; mark = piece.find(wordMark)) {
        text += piece.substr(0, mark);
        piece.remove_prefix(mark + wordMark.size());
    }
    text += piece;
}

int64_t elementOr0(const std::vector<int64_t>& values, size_t index)
{
    return index < values.size() ? values[index] : 0;
}

} // namespace

std::vector<Word> timedWords(
    const WindowTokens& window, std::span<const std::string> vocabulary, double secondsPerFrame, double timeOffset)
{
    std::vector<Word> words;
    std::string text;
    int64_t startFrame = 0;
    int64_t endFrame = 0; // the furthest so far, of the whole window

    const auto time = [&](int64_t frame) { return static_cast<double>(frame) * secondsPerFrame + timeOffset; };
    const auto finishWord = [&] {
        const double start = time(startFrame);
        if (!text.empty())
            words.push_back(
                { .text = std::exchange(text, {}), .start = start, .end = std::max(start, time(endFrame)) });
    };

    for (size_t i = 0; i < window.tokens.size(); ++i) {
        const int64_t token = window.tokens[i];
        if (token < 0 || token >= static_cast<int64_t>(vocabulary.size()))
            continue;
        const std::string& piece = vocabulary[static_cast<size_t>(token)];
        if (isControl(piece))
            continue;
        if (piece.starts_with(wordMark))
            finishWord();
        if (text.empty())
            startFrame = elementOr0(window.frames, i);
        if (i < window.ends.size())
            endFrame = std::max(endFrame, window.ends[i]);
        appendWithoutMarks(text, piece);
    }
    finishWord();
    return words;
}

} // namespace Ostrel
