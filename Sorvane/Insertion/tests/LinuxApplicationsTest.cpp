// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "LinuxApplications.h"

#include "InsertionTest.h"

namespace Sorvane {
namespace {

TEST(LinuxApplications, AreBrowsersUnderOtherNames)
{
    EXPECT_EQ(detectionIdentifier("firefox-esr"), "org.mozilla.firefox");
    EXPECT_EQ(detectionIdentifier("google-chrome"), "com.google.Chrome");
    EXPECT_EQ(detectionIdentifier("chromium"), "org.chromium.Chromium");
    EXPECT_EQ(detectionIdentifier("microsoft-edge"), "com.microsoft.edgemac");
    EXPECT_EQ(detectionIdentifier("brave-browser"), "com.brave.Browser");
    EXPECT_EQ(detectionIdentifier("org.example.editor"), "org.example.editor");
}

TEST(LinuxApplications, IncludeMailPrograms)
{
    for (const auto* identifier : { "thunderbird", "org.gnome.Evolution", "org.gnome.Geary", "org.kde.kmail2" })
        EXPECT_TRUE(isLinuxMailApp(identifier)) << identifier;
    EXPECT_FALSE(isLinuxMailApp("org.example.editor"));
}

TEST_F(InsertionTest, CallsEveryTerminalATerminal)
{
    for (const auto* identifier : { "org.kde.konsole", "xfce4-terminal", "debian-xterm", "kitty", "Alacritty" }) {
        editor_.becomeAnother({ .name = "Console", .bundleIdentifier = identifier });
        EXPECT_EQ(nameForHarnessDetection(editor_), "terminal") << identifier;
    }
    editor_.becomeAnother({ .name = "Editor", .bundleIdentifier = "org.example.editor" });
    EXPECT_EQ(nameForHarnessDetection(editor_), "Editor");
    editor_.becomeAnother({});
    EXPECT_EQ(nameForHarnessDetection(editor_), "");
}

TEST_F(InsertionTest, LeavesTheTerminalsNameOutOfTheTitle)
{
    editor_.becomeAnother({ .name = "Xfce Terminal", .bundleIdentifier = "xfce4-terminal" });
    EXPECT_EQ(titleForHarnessDetection(editor_, "Terminal - codex | notes"), "codex | notes");
    EXPECT_EQ(titleForHarnessDetection(editor_, "codex | notes"), "codex | notes");
    editor_.becomeAnother({ .name = "Editor", .bundleIdentifier = "org.example.editor" });
    EXPECT_EQ(titleForHarnessDetection(editor_, "Terminal - codex"), "Terminal - codex");
}

} // namespace
} // namespace Sorvane
