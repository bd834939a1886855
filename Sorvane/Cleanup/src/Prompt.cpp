// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/Precondition.h>
#include <Regex/Pattern.h>
#include <Sorvane/DictationFormatting.h>
#include <Sorvane/TranscriptCleanup.h>

namespace Sorvane {

namespace {

// The model was trained on exactly these frames. The empty thoughts tell it that its thinking is over.
constexpr std::string_view frameHead
    = "<|im_start|>system\n"
      "You are a text normalizer for speech-to-text transcripts. The input begins with a control line specifying the "
      "styling, structure, and context settings; clean the transcript to match those settings and output only the "
      "cleaned text.<|im_end|>\n"
      "<|im_start|>user\n";
constexpr std::string_view frameTail = "<|im_end|>\n<|im_start|>assistant\n<think>\n\n</think>\n\n";

// Whoever ends on a spoken punctuation mark and counts nothing wants sentences.
std::string_view structure(std::string_view text, const LexicalTagger& tagger)
{
    static const Regex::Pattern spokenMarkAtTheEnd
        = Regex::rx(R"((?i)\b(?:period|full stop|question mark|exclamation (?:mark|point))[.!?]?\s*$)");
    const bool isProse
        = spokenMarkAtTheEnd.contains(text) && !DictationFormatting::enumeration(text, tagger).has_value();
    return isProse ? "prose" : "lists";
}

} // namespace

std::string_view rawValue(TranscriptCleanup::Context context)
{
    switch (context) {
    case TranscriptCleanup::Context::general:
        return "general";
    case TranscriptCleanup::Context::email:
        return "email";
    }
    PlatformSupport::fatalError("no such cleanup context");
}

std::string TranscriptCleanup::prompt(std::string_view text, Context context, const LexicalTagger& tagger)
{
    std::string prompt(frameHead);
    prompt.append("[Styling: semi-formal] [Structure: ").append(structure(text, tagger));
    prompt.append("] [Context: ").append(rawValue(context)).append("]\n");
    return prompt.append(text).append(frameTail);
}

} // namespace Sorvane
