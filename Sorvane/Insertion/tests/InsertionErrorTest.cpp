// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/InsertionError.h>

#include <gtest/gtest.h>

#include <vector>

namespace Sorvane {
namespace {

TEST(InsertionError, TellsTheUserWhatToDo)
{
    std::vector<std::string> messages;
    for (const auto which : InsertionError::allCases)
        messages.push_back(InsertionError(which).description());
    EXPECT_EQ(messages,
        (std::vector<std::string> {
            "Allow Accessibility access so Sorvane can insert text into other apps.",
            "Place the cursor in a text field in another app, then try again.",
            "Dictation is unavailable in password fields.",
            "This app does not expose a verified text field. Your transcript is ready to copy.",
            "The original text field is no longer available. Your transcript is ready to copy.",
            "Sorvane could not restore the original text field. Your transcript is ready to copy.",
            "macOS could not insert the text. Copy your transcript below.",
            "macOS could not copy the transcript for insertion. Copy your transcript below.",
        }));
}

} // namespace
} // namespace Sorvane
