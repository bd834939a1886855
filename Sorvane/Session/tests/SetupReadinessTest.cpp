// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/SetupReadiness.h>

#include <gtest/gtest.h>

#include <vector>

namespace Sorvane {
namespace {

using Phase = DictationPhase;

TEST(SetupReadiness, NamesTheFirstThingThatIsMissing)
{
    EXPECT_EQ((SetupReadiness { Phase::preparing, false, false, false }).blocker(),
        "On-device models are still loading. You can finish setup while they prepare.");
    EXPECT_EQ((SetupReadiness { Phase::idle, false, false, false }).blocker(),
        "Finish preparing the on-device models in setup before starting dictation.");
    EXPECT_EQ((SetupReadiness { Phase::idle, true, false, false }).blocker(),
        "Microphone access is missing. Open setup to allow Sorvane to hear you.");
    EXPECT_EQ((SetupReadiness { Phase::idle, true, true, false }).blocker(),
        "Accessibility access is missing. Open setup to allow typing in other apps. If macOS already shows Sorvane "
        "enabled, remove its old entry and add this installed app again.");
}

TEST(SetupReadiness, LetsNoDictationStartDuringAnother)
{
    for (const auto phase : { Phase::recording, Phase::paused, Phase::transcribing })
        EXPECT_EQ((SetupReadiness { phase, true, true, true }).blocker(),
            "Finish the current dictation before starting another.");
}

TEST(SetupReadiness, HasNoBlockerWhenAllIsThere)
{
    EXPECT_EQ((SetupReadiness { Phase::idle, true, true, true }).blocker(), std::nullopt);
}

} // namespace
} // namespace Sorvane
