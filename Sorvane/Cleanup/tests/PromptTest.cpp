// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "PlainTagger.h"

#include <Sorvane/TranscriptCleanup.h>

#include <gtest/gtest.h>

namespace Sorvane {

namespace {

using Context = TranscriptCleanup::Context;

std::string controlLine(const std::string& text, Context context = Context::general)
{
    const std::string prompt = TranscriptCleanup::prompt(text, context, PlainTagger());
    const size_t start = prompt.find("[Styling");
    return prompt.substr(start, prompt.find('\n', start) - start);
}

constexpr const char* lists = "[Styling: semi-formal] [Structure: lists] [Context: general]";
constexpr const char* prose = "[Styling: semi-formal] [Structure: prose] [Context: general]";

} // namespace

TEST(Prompt, IsTheFrameTheControlLineAndTheText)
{
    EXPECT_EQ(TranscriptCleanup::prompt("um hello\nthere ", Context::email, PlainTagger()),
        "<|im_start|>system\nYou are a text normalizer for speech-to-text transcripts. The input begins with a control "
        "line specifying the styling, structure, and context settings; clean the transcript to match those settings "
        "and output only the cleaned text.<|im_end|>\n<|im_start|>user\n"
        "[Styling: semi-formal] [Structure: lists] [Context: email]\n"
        "um hello\nthere <|im_end|>\n<|im_start|>assistant\n<think>\n\n</think>\n\n");
}

TEST(Prompt, NamesTheContext)
{
    EXPECT_EQ(controlLine("hello"), lists);
    EXPECT_EQ(controlLine("hello", Context::email), "[Styling: semi-formal] [Structure: lists] [Context: email]");
    EXPECT_EQ(rawValue(Context::general), "general");
    EXPECT_EQ(rawValue(Context::email), "email");
}

TEST(Prompt, AsksForProseAfterASpokenMark)
{
    for (const std::string text :
        { "that is all period", "that is all Full Stop.", "is it question mark?\n", "wow exclamation mark",
            "wow exclamation point!  ", "Period", "that is it period?", "no. period.\u00A0\n" })
        EXPECT_EQ(controlLine(text), prose) << text;
}

TEST(Prompt, AsksForListsWhereTheMarkIsNotAtTheEnd)
{
    for (const std::string text : { "the period was long", "a semiperiod", "periods", "a period..", "exclamation",
             "full  stop", "a period,", "period \xFF" })
        EXPECT_EQ(controlLine(text), lists) << text;
}

TEST(Prompt, AsksForListsWhereTheSpeakerCounts)
{
    EXPECT_EQ(controlLine("Number one, buy milk. Number two, call mom period"), lists);
    EXPECT_EQ(controlLine("First, buy milk, then call mom, then rest period"), prose);
}

} // namespace Sorvane
