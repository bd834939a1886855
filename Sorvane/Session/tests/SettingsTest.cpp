// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <PlatformSupport/UserDefaults.h>
#include <Sorvane/Settings.h>

#include <gtest/gtest.h>

namespace Sorvane {
namespace {

using PlatformSupport::MemoryUserDefaults;

TEST(Settings, OfAFreshInstallationHaveTheirDefaults)
{
    const auto settings = Settings::read(MemoryUserDefaults());
    EXPECT_EQ(settings.mode, ActivationMode::toggle);
    EXPECT_EQ(settings.shortcut, Shortcut::optionSpace);
    EXPECT_FALSE(settings.previewBeforeInsert);
    EXPECT_TRUE(settings.automaticallyCopy);
    EXPECT_EQ(settings.outputModeSelection, OutputModeSelection::automatic);
}

TEST(Settings, AreReadAsTheyWereStored)
{
    MemoryUserDefaults defaults;
    defaults.setString("activationMode", "Hold to speak");
    defaults.setString("shortcut", "⇧ ⌘ D");
    defaults.setBoolean("previewBeforeInsert", true);
    defaults.setBoolean("automaticallyCopy", false);
    defaults.setString("outputModeSelection", "email");
    const auto settings = Settings::read(defaults);
    EXPECT_EQ(settings.mode, ActivationMode::hold);
    EXPECT_EQ(settings.shortcut, Shortcut::commandShiftD);
    EXPECT_TRUE(settings.previewBeforeInsert);
    EXPECT_FALSE(settings.automaticallyCopy);
    EXPECT_EQ(settings.outputModeSelection, OutputModeSelection::email);
}

TEST(Settings, OfAnotherTypeOrSpellingCountAsAbsent)
{
    MemoryUserDefaults defaults;
    defaults.setString("activationMode", "hold");
    defaults.setString("shortcut", "⌥Space");
    defaults.setString("previewBeforeInsert", "true");
    defaults.setString("automaticallyCopy", "false");
    defaults.setBoolean("outputModeSelection", true);
    const auto settings = Settings::read(defaults);
    EXPECT_EQ(settings.mode, ActivationMode::toggle);
    EXPECT_EQ(settings.shortcut, Shortcut::optionSpace);
    EXPECT_FALSE(settings.previewBeforeInsert);
    EXPECT_TRUE(settings.automaticallyCopy);
    EXPECT_EQ(settings.outputModeSelection, OutputModeSelection::automatic);
}

TEST(Settings, FallBackOnTheOutputModeOfAnOlderInstallation)
{
    MemoryUserDefaults defaults;
    defaults.setString("outputModeSelection", "unknown");
    defaults.setString("outputMode", "email");
    defaults.setBoolean("experimentalCleanup", false);
    EXPECT_EQ(Settings::read(defaults).outputModeSelection, OutputModeSelection::email);
}

TEST(Settings, FallBackOnTheCleanupSwitchOfTheOldestInstallations)
{
    MemoryUserDefaults defaults;
    defaults.setBoolean("experimentalCleanup", false);
    EXPECT_EQ(Settings::read(defaults).outputModeSelection, OutputModeSelection::raw);
    defaults.setBoolean("experimentalCleanup", true);
    EXPECT_EQ(Settings::read(defaults).outputModeSelection, OutputModeSelection::clean);
}

} // namespace
} // namespace Sorvane
