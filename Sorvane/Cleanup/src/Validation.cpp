// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Regex/Trimming.h>
#include <Sorvane/TranscriptCleanup.h>

#include <algorithm>
#include <array>

namespace Sorvane {

namespace {

constexpr size_t alwaysAllowed = 256; // bytes, for the tidied form of a short transcript

// Where a stop marker stands in the model's output.
struct StopMarker {
    size_t start;
    size_t end;
};

std::optional<StopMarker> firstStopMarker(std::string_view output)
{
    std::optional<StopMarker> first;
    for (const std::string_view marker : { "<|im_end|>", "<|endoftext|>" }) {
        const size_t start = output.find(marker);
        if (start != std::string_view::npos && (!first || start < first->start))
            first = { start, start + marker.size() };
    }
    return first;
}

bool holdsControlTokens(std::string_view text)
{
    constexpr std::array<std::string_view, 3> tokens { "<|", "<think>", "</think>" };
    return std::ranges::any_of(
        tokens, [text](std::string_view token) { return text.find(token) != std::string_view::npos; });
}

} // namespace

std::optional<std::string> TranscriptCleanup::validate(std::string_view output, std::string_view original)
{
    const auto marker = firstStopMarker(output);
    if (!marker)
        return std::nullopt;
    const auto body = Regex::trimmed(output.substr(0, marker->start));
    const auto tail = Regex::trimmed(output.substr(marker->end));
    const bool hasGoneOn = !tail.empty() && tail != "[end of text]";
    const size_t limit = std::max(alwaysAllowed, 2 * original.size());
    if (hasGoneOn || body.empty() || holdsControlTokens(body) || body.size() > limit)
        return std::nullopt;
    return std::string(body);
}

} // namespace Sorvane
