// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "TranscriptFormat.h"

#include "Cue.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <utility>

namespace Sorvane {

namespace {

std::string plainText(const Ostrel::Result& result)
{
    std::array<char, 128> line {};
    std::snprintf(line.data(), line.size(), "%.2fs audio, %.2fs processing\n", result.duration, result.processingTime);
    return result.text + "\n" + line.data();
}

std::string json(const Ostrel::Result& result)
{
    auto words = nlohmann::ordered_json::array();
    for (const auto& word : result.words)
        words.push_back({ { "text", word.text }, { "start", word.start }, { "end", word.end } });
    const nlohmann::ordered_json document { { "text", result.text }, { "words", words },
        { "duration", result.duration }, { "processingTime", result.processingTime } };
    // A vocabulary is a foreign file: bytes that are no UTF-8 become U+FFFD.
    return document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string subRip(const Ostrel::Result& result)
{
    std::string text;
    int number = 0;
    for (const auto& cue : cues(result.words)) {
        text += std::to_string(++number) + "\n" + timestamp(cue.start, ',') + " --> " + timestamp(cue.end, ',') + "\n"
            + wrapped(cue.text) + "\n\n";
    }
    return text;
}

std::string escapedForWebVtt(std::string_view text)
{
    std::string escaped;
    for (const char character : text) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

std::string webVtt(const Ostrel::Result& result)
{
    std::string text = "WEBVTT\n\n";
    for (const auto& cue : cues(result.words)) {
        text += timestamp(cue.start, '.') + " --> " + timestamp(cue.end, '.') + "\n"
            + escapedForWebVtt(wrapped(cue.text)) + "\n\n";
    }
    return text;
}

} // namespace

std::optional<TranscriptFormat> transcriptFormatNamed(std::string_view name)
{
    constexpr std::array<std::pair<std::string_view, TranscriptFormat>, 4> formats { {
        { "text", TranscriptFormat::text },
        { "json", TranscriptFormat::json },
        { "srt", TranscriptFormat::srt },
        { "vtt", TranscriptFormat::vtt },
    } };
    for (const auto& [known, format] : formats)
        if (known == name)
            return format;
    return std::nullopt;
}

std::string formatted(const Ostrel::Result& result, TranscriptFormat format)
{
    switch (format) {
    case TranscriptFormat::json:
        return json(result);
    case TranscriptFormat::srt:
        return subRip(result);
    case TranscriptFormat::vtt:
        return webVtt(result);
    case TranscriptFormat::text:
        break;
    }
    return plainText(result);
}

} // namespace Sorvane
