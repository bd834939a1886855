// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#pragma once

#include <Ostrel/Result.h>

#include <optional>
#include <string>
#include <string_view>

namespace Sorvane {

enum class TranscriptFormat { text, json, srt, vtt };

// The format that --format calls by this name.
std::optional<TranscriptFormat> transcriptFormatNamed(std::string_view name);

// A whole transcript as it goes to standard output, with its final line feed.
//
//   text   the words, then a line as "12.40s audio, 0.31s processing"
//   json   {"text", "words": [{"text", "start", "end"}], "duration", "processingTime"}, seconds
//   srt    SubRip, vtt WebVTT: a cue for each sentence, cut at pauses and where it grows too long to read
std::string formatted(const Ostrel::Result& result, TranscriptFormat format);

} // namespace Sorvane
