// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include <Sorvane/HarnessDetection.h>

#include <gtest/gtest.h>

#include <vector>

namespace Sorvane::HarnessDetection {
namespace {

using Labels = std::vector<std::string>;
using enum CodingHarness;

TEST(HarnessDetection, ReadsLabelsOfAnAgent)
{
    EXPECT_EQ(toolLabel("claude code"), claudeCode);
    EXPECT_EQ(toolLabel("openai codex"), codex);
    EXPECT_EQ(toolLabel("codex terminal"), codex);
    EXPECT_EQ(toolLabel("terminal: claude code"), claudeCode);
    for (const std::string separator : { " · ", " — ", " - ", " | " })
        EXPECT_EQ(toolLabel("claude code" + separator + "project"), claudeCode);
}

TEST(HarnessDetection, WantsTheWholeName)
{
    EXPECT_EQ(toolLabel(""), std::nullopt);
    EXPECT_EQ(toolLabel("claude codec"), std::nullopt);
    EXPECT_EQ(toolLabel("claude code: notes"), std::nullopt);
    EXPECT_EQ(toolLabel("my codex"), std::nullopt);
    EXPECT_EQ(toolLabel("codex -notes"), std::nullopt);
    EXPECT_EQ(toolLabel("Codex"), std::nullopt); // labels come in lower case
}

TEST(HarnessDetection, LooksAtTerminalsOnly)
{
    for (const std::string name : { "Ghostty", "Terminal", "iTerm", "iTerm2", "Orca", "Superset", "Conductor" })
        EXPECT_EQ(detect(name, Labels {}, "Codex | notes"), codex) << name;
    EXPECT_EQ(detect("Firefox", Labels { "address" }, "claude code · project"), std::nullopt);
    EXPECT_EQ(detect("Terminal 2", Labels {}, "claude code"), std::nullopt);
    EXPECT_EQ(detect("Editor", Labels { "Terminal 1" }, "claude code · project"), claudeCode);
}

TEST(HarnessDetection, PrefersLabelsToTheTitle)
{
    EXPECT_EQ(detect("Terminal", Labels { " Claude Code\n", "shell" }, "codex"), claudeCode);
    EXPECT_EQ(detect("Editor", Labels { "Terminal: Codex", "CODEX" }, std::nullopt), codex);
}

TEST(HarnessDetection, DoesNotChooseBetweenTwo)
{
    EXPECT_EQ(detect("Terminal", Labels { "claude code", "codex" }, "codex"), std::nullopt);
}

TEST(HarnessDetection, ReadsATitleOfUpToTwoHundredCharacters)
{
    const std::string name = "Claude Code — ";
    std::string title = name;
    for (int i = 0; i < 200 - 14; ++i)
        title += "é";
    EXPECT_EQ(detect("Terminal", Labels {}, title), claudeCode);
    EXPECT_EQ(detect("Terminal", Labels {}, title + "é"), std::nullopt);
    EXPECT_EQ(detect("Terminal", Labels {}, " claude code \n"), claudeCode);
    EXPECT_EQ(detect("Terminal", Labels {}, std::nullopt), std::nullopt);
}

} // namespace
} // namespace Sorvane::HarnessDetection
