// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "InsertionTest.h"

namespace Sorvane {
namespace {

class HarnessSignalsTest : public InsertionTest {
protected:
    DesktopFakes::FakeApplication& terminal_
        = desktop_.launch({ .name = "Terminal", .bundleIdentifier = "org.gnome.Terminal" });
    DesktopFakes::FakeElement& frame_ = terminal_.openWindow("~");
    DesktopFakes::FakeElement& pane_ = frame_.addGroup();
    DesktopFakes::FakeElement& tab_ = pane_.addGroup();
    DesktopFakes::FakeElement& screen_ = tab_.addTextArea();

    HarnessSignalsTest() { screen_.focus(); }

    std::optional<CodingHarness> harness() { return insertion_.captureForRecording().harness; }
};

TEST_F(HarnessSignalsTest, LooksOnlyWhenAsked)
{
    screen_.retitle("codex");
    EXPECT_EQ(capture().harness, std::nullopt);
    EXPECT_EQ(insertion_.capture(HarnessSearch::Yes).harness, CodingHarness::codex);
}

TEST_F(HarnessSignalsTest, ReadsTheLabelsOfThreeElements)
{
    pane_.retitle("Claude Code");
    EXPECT_EQ(harness(), CodingHarness::claudeCode);
    auto& deeper = screen_.addTextArea();
    deeper.focus();
    EXPECT_EQ(harness(), std::nullopt);
}

TEST_F(HarnessSignalsTest, ReadsDescriptionsToo)
{
    auto& described = tab_.add({ .role = "AXTextArea", .description = "Codex" });
    described.focus();
    EXPECT_EQ(harness(), CodingHarness::codex);
}

TEST_F(HarnessSignalsTest, TakesTheWindowsTitleOnlyAsATitle)
{
    frame_.retitle("claude code · project");
    auto& field = frame_.addTextArea("codex");
    field.focus();
    EXPECT_EQ(harness(), CodingHarness::codex); // a label of the window's own would have made it two agents
    field.retitle("");
    EXPECT_EQ(harness(), CodingHarness::claudeCode);
}

TEST_F(HarnessSignalsTest, DropsLabelsOfMoreThanTwoHundredCharacters)
{
    const std::string longest = "codex | " + std::string(192, 'x');
    screen_.retitle(longest);
    EXPECT_EQ(harness(), CodingHarness::codex);
    screen_.retitle(longest + "x");
    EXPECT_EQ(harness(), std::nullopt);
}

TEST_F(HarnessSignalsTest, CountsCharactersAsAReaderDoes)
{
    std::string accents = "codex | ";
    for (int i = 0; i < 192; ++i)
        accents += "e\u0301";
    screen_.retitle(accents);
    EXPECT_EQ(harness(), CodingHarness::codex);
}

TEST_F(HarnessSignalsTest, GivesEachReadFiftyMilliseconds)
{
    harness();
    const auto& calls = desktop_.accessibility.calls;
    EXPECT_EQ(desktop_.accessibility.readsOf(AccessibilityAttribute::title), 4U);
    for (const auto& call : calls)
        if (call.what == "read AXTitle" || call.what == "read AXDescription" || call.what == "read AXParent") {
            EXPECT_EQ(call.timeout, 50ms);
        }
}

TEST_F(HarnessSignalsTest, StopsAfterATenthOfASecond)
{
    screen_.answerAfter(AccessibilityAttribute::title, 45ms);
    screen_.answerAfter(AccessibilityAttribute::description, 45ms);
    tab_.answerAfter(AccessibilityAttribute::title, 10ms);
    pane_.retitle("codex");
    frame_.retitle("codex | project");
    EXPECT_EQ(harness(), std::nullopt);
    EXPECT_EQ(elapsed(), 100ms);
}

TEST_F(HarnessSignalsTest, StopsWhereThereIsNoParent)
{
    screen_.answer(AccessibilityAttribute::parent, std::string("nobody"));
    tab_.retitle("codex");
    EXPECT_EQ(harness(), std::nullopt);
    frame_.retitle("codex");
    EXPECT_EQ(harness(), CodingHarness::codex);
}

TEST_F(HarnessSignalsTest, TakesNoTitleWhereThereIsNoWindow)
{
    frame_.retitle("codex");
    terminal_.element().fail(AccessibilityAttribute::focusedWindow, AccessibilityError::noValue);
    EXPECT_EQ(harness(), std::nullopt);
}

TEST_F(HarnessSignalsTest, KnowsATerminalByItsIdentifier)
{
    screen_.retitle("codex");
    terminal_.becomeAnother({ .name = "Konsole", .bundleIdentifier = "org.kde.konsole" });
    EXPECT_EQ(harness(), CodingHarness::codex);
    terminal_.becomeAnother({ .name = "Notes", .bundleIdentifier = "org.example.notes" });
    EXPECT_EQ(harness(), std::nullopt);
    terminal_.becomeAnother({});
    EXPECT_EQ(harness(), std::nullopt);
}

} // namespace
} // namespace Sorvane
