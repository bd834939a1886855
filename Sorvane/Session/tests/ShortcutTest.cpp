// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <DesktopFakes/FakeHotKey.h>
#include <Sorvane/ActivationMode.h>
#include <Sorvane/GlobalShortcut.h>

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace Sorvane {
namespace {

using DesktopServices::KeyChord;

TEST(Shortcut, IsStoredAndShownByItsLabel)
{
    std::vector<std::string_view> labels;
    for (const auto each : allShortcuts) {
        labels.push_back(rawValue(each));
        EXPECT_EQ(shortcut(rawValue(each)), each);
    }
    EXPECT_EQ(labels, (std::vector<std::string_view> { "⌥ Space", "⌃ ⌥ Space", "⇧ ⌘ D" }));
}

TEST(Shortcut, IsReadOnlyFromItsExactLabel)
{
    for (const auto* const label : { "", "⌥Space", "⌥  Space", "⌥ space", "⌥ Space ", "⇧⌘D", "optionSpace" })
        EXPECT_EQ(shortcut(label), std::nullopt) << label;
}

TEST(Shortcut, IsAChordOfKeys)
{
    EXPECT_EQ(keyChord(Shortcut::optionSpace), (KeyChord { .keyCode = 49, .modifierMask = 2048 }));
    EXPECT_EQ(keyChord(Shortcut::controlOptionSpace), (KeyChord { .keyCode = 49, .modifierMask = 6144 }));
    EXPECT_EQ(keyChord(Shortcut::commandShiftD), (KeyChord { .keyCode = 2, .modifierMask = 768 }));
}

TEST(ActivationMode, IsStoredAndShownByItsWords)
{
    std::vector<std::string_view> words;
    for (const auto each : allActivationModes) {
        words.push_back(rawValue(each));
        EXPECT_EQ(activationMode(rawValue(each)), each);
    }
    EXPECT_EQ(words, (std::vector<std::string_view> { "Press to start / stop", "Hold to speak" }));
    EXPECT_EQ(activationMode("hold to speak"), std::nullopt);
}

class GlobalShortcutTest : public ::testing::Test {
protected:
    GlobalShortcutTest()
    {
        shortcut->onEvent = [this](bool pressed) { events.push_back(pressed); };
    }

    DesktopFakes::FakeHotKey hotKey;
    std::optional<GlobalShortcut> shortcut { std::in_place, hotKey };
    std::vector<bool> events;
};

TEST_F(GlobalShortcutTest, TellsOfEveryPressAndRelease)
{
    hotKey.press();
    EXPECT_TRUE(shortcut->registerShortcut(Shortcut::optionSpace));
    hotKey.press();
    hotKey.press();
    hotKey.release();
    EXPECT_EQ(events, (std::vector { true, true, false }));
}

TEST_F(GlobalShortcutTest, GivesTheChordBeforeBackWhateverComesOfTheNewOne)
{
    EXPECT_TRUE(shortcut->registerShortcut(Shortcut::optionSpace));
    EXPECT_TRUE(shortcut->registerShortcut(Shortcut::optionSpace));
    hotKey.heldByOthers = { keyChord(Shortcut::commandShiftD) };
    EXPECT_FALSE(shortcut->registerShortcut(Shortcut::commandShiftD));
    EXPECT_EQ(hotKey.chord(), std::nullopt);
}

TEST_F(GlobalShortcutTest, GivesItsChordBackAtItsEnd)
{
    shortcut->registerShortcut(Shortcut::optionSpace);
    shortcut.reset();
    EXPECT_EQ(hotKey.chord(), std::nullopt);
    hotKey.registerChord(keyChord(Shortcut::optionSpace));
    hotKey.press();
    EXPECT_TRUE(events.empty());
}

} // namespace
} // namespace Sorvane
