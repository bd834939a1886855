// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/DictationRules.h>

#include <gtest/gtest.h>

#include <vector>

namespace Sorvane {
namespace {

using Phase = DictationPhase;
using Mode = ActivationMode;

const std::vector allPhases { Phase::idle, Phase::preparing, Phase::recording, Phase::paused, Phase::transcribing };

TEST(DictationRules, StopATogglingDictationOnAPressOnly)
{
    for (const auto phase : allPhases) {
        const bool canStop = phase == Phase::recording || phase == Phase::paused;
        EXPECT_EQ(DictationRules::shouldStop(phase, Mode::toggle, true), canStop);
        EXPECT_FALSE(DictationRules::shouldStop(phase, Mode::toggle, false));
    }
}

TEST(DictationRules, StopAHeldDictationOnAReleaseWhileRecordingOnly)
{
    for (const auto phase : allPhases) {
        EXPECT_FALSE(DictationRules::shouldStop(phase, Mode::hold, true));
        EXPECT_EQ(DictationRules::shouldStop(phase, Mode::hold, false), phase == Phase::recording);
    }
}

TEST(DictationRules, FindNothingUsableInWhitespace)
{
    EXPECT_EQ(DictationRules::usableTranscript(""), std::nullopt);
    EXPECT_EQ(DictationRules::usableTranscript(" \t\n\r \u00A0\u2003\u2028"), std::nullopt);
}

TEST(DictationRules, TrimATranscriptAndKeepItsInside)
{
    EXPECT_EQ(DictationRules::usableTranscript("  two  blanks \n"), "two  blanks");
    EXPECT_EQ(DictationRules::usableTranscript("a\nb"), "a\nb");
}

} // namespace
} // namespace Sorvane
